// What a terminal gets and a file or pipe does not: colours and a progress bar.
#ifndef ORVANEL_CLI_TERMINAL_H
#define ORVANEL_CLI_TERMINAL_H

#include <cstddef>
#include <string>

namespace orvanel::cli {

enum class Stream { kOutput, kErrors };

// Whether the stream is a terminal that is not told otherwise by NO_COLOR or TERM=dumb.
bool HasColour(Stream stream);

// A text in bold where the stream has colour.
std::string Bold(const std::string& text, Stream stream);

// "orvanel: ..." and "orvanel: warning: ..." to the error output.
void PrintError(const std::string& message);
void PrintWarning(const std::string& message);

// One line on the error output that is written over and over; nothing at all where that is no terminal.
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
