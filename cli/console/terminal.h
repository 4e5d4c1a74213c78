// Writes to a terminal: colours, a progress bar, and visible control characters.
#ifndef ORVANEL_CLI_CONSOLE_TERMINAL_H
#define ORVANEL_CLI_CONSOLE_TERMINAL_H

#include <cstddef>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

enum class Stream { kOutput, kErrors };

// Whether the stream is a terminal, and neither NO_COLOR nor TERM=dumb is set.
bool HasColour(Stream stream);

// Marks a text for ForTerminal, which makes it bold if standard output has colour.
std::string Bold(const std::string& text);

// Formats lines for a terminal: marked text is bold, and control characters of other text are visible.
std::string ForTerminal(const std::string& lines);

// Print "orvanel: ...", "orvanel: warning: ..." and "orvanel: note: ..." to the error output with visible control
// characters.
void PrintError(const std::string& message);
void PrintWarning(const std::string& message);
void PrintNote(const std::string& message);

// One line on the error output that is overwritten by each update, with visible control characters. It is not shown if
// the error output is not a terminal.
class StatusLine {
 public:
  StatusLine();
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;
  ~StatusLine();  // erases the line

  bool isShown() const { return shown_; }
  void Show(const std::string& text) const;

 private:
  bool shown_;
};

// A progress bar.
class Progress {
 public:
  Progress(std::string label, std::size_t total);

  void Advance();

 private:
  void Draw() const;

  std::string label_;
  std::size_t total_, done_ = 0;
  StatusLine line_;
};

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_CONSOLE_TERMINAL_H
