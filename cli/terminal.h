// What a terminal gets and a file or pipe does not: colours and a progress bar.
#ifndef ORVANEL_CLI_TERMINAL_H
#define ORVANEL_CLI_TERMINAL_H

#include <cstddef>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

enum class Stream { kOutput, kErrors };

// Whether the stream is a terminal that is not told otherwise by NO_COLOR or TERM=dumb.
bool HasColour(Stream stream);

// A text that ForTerminal turns into one in bold, where standard output has colour.
std::string Bold(const std::string& text);

// Lines as a terminal may get them: with bold text, and the control characters of all other text made visible.
std::string ForTerminal(const std::string& lines);

// "orvanel: ...", "orvanel: warning: ..." and "orvanel: note: ..." to the error output, control characters made
// visible.
void PrintError(const std::string& message);
void PrintWarning(const std::string& message);
void PrintNote(const std::string& message);

// One line on the error output, control characters made visible, that is written over and over; nothing at all where
// that is no terminal.
class StatusLine {
 public:
  StatusLine();
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;
  ~StatusLine();  // wipes the line

  bool isShown() const { return shown_; }
  void Show(const std::string& text) const;

 private:
  bool shown_;
};

// A bar that grows with what is done.
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

#endif  // ORVANEL_CLI_TERMINAL_H
