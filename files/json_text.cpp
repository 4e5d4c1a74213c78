// Builds a value from the events of the parser, and records the position of each key.
#include "files/json_text.h"

#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

#include "base/error.h"
#include "base/number_text.h"

namespace orvanel::files {
namespace {

constexpr std::size_t kMaxKeys = 2'000'000;  // each costs some 100 bytes

// Iterates over a text and records the position.
class Cursor {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Cursor(const char* at, const char** reached) : at_(at), reached_(reached) {}

  reference operator*() const { return *at_; }
  Cursor& operator++() {
    *reached_ = ++at_;
    return *this;
  }
  Cursor operator++(int) {
    Cursor before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const Cursor& a, const Cursor& b) { return a.at_ == b.at_; }
  friend bool operator!=(const Cursor& a, const Cursor& b) { return !(a == b); }

 private:
  const char* at_;
  const char** reached_;
};

// The byte of the opening quote of the string that closes before `end`. Quotes within it follow a backslash.
std::size_t OpeningQuote(std::string_view text, std::size_t end) {
  for (std::size_t at = end - 1; at-- > 0;) {
    if (text[at] != '"') continue;
    std::size_t backslashes = 0;
    while (backslashes < at && text[at - 1 - backslashes] == '\\') ++backslashes;
    if (backslashes % 2 == 0) return at;
  }
  return 0;
}

// The parser's message, without its prefix "[json...] parse error at line 3, column 4: ".
std::string ParserReason(const std::string& what) {
  constexpr std::size_t kLongest = 200;
  const std::size_t colon = what.find(": ");
  return Shortened(colon == std::string::npos ? what : what.substr(colon + 2), kLongest);
}

class Builder : public nlohmann::json_sax<Json> {
 public:
  Builder(std::string_view text, std::size_t levels) : text_(text), levels_(levels), reached_(text.data()) {}

  JsonText Read() {
    const char* const end = text_.data() + text_.size();
    Json::sax_parse(Cursor(text_.data(), &reached_), Cursor(end, &reached_), this);
    return std::move(result_);
  }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(std::int64_t value) override { return Add(value); }
  bool number_unsigned(std::uint64_t value) override { return Add(value); }
  bool number_float(double value, const std::string&) override { return Add(value); }
  bool string(std::string& value) override { return Add(std::move(value)); }
  bool binary(Json::binary_t&) override { return true; }  // does not occur in texts
  bool start_object(std::size_t) override { return Open(Json::object()); }
  bool start_array(std::size_t) override { return Open(Json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(std::string& name) override {
    Level& level = open_.back();
    level.byte = OpeningQuote(text_, Reached());
    level.key = std::move(name);
    level.isTwice = !level.seen.insert(level.key).second;
    if (level.isTwice) {
      Fault(level.byte, Key() + " is given twice; keep one");
    } else if (open_.size() == 1) {
      result_.keys.push_back(level.byte);
    }
    if (++keys_ <= kMaxKeys) return true;
    Fault(level.byte, "has more than 2 million keys; is this a file of eyes?");
    return false;
  }

  bool parse_error(std::size_t read, const std::string&, const nlohmann::detail::exception& error) override {
    if (dynamic_cast<const Json::out_of_range*>(&error) == nullptr) {
      Fault(read == 0 ? 0 : read - 1, "is not valid JSON: " + ParserReason(error.what()));
    } else if (Key().empty()) {
      Fault(0, "is a number too large to be finite; check its exponent");
    } else {
      Fault(KeyByte(), Key() + " holds a number too large to be finite; check its exponent");
    }
    return false;
  }

 private:
  struct Level {            // an array or object that is not yet closed
    Json* value = nullptr;  // null if it is not kept
    std::set<std::string> seen;
    std::string key;  // the last
    std::size_t byte = 0;
    bool isTwice = false;
  };

  std::size_t Reached() const { return static_cast<std::size_t>(reached_ - text_.data()); }

  // The key that is being read, after its parents' keys: "key 'convention.unit'". Empty if there is none.
  std::string Key() const {
    std::string path;
    for (const Level& level : open_) {
      if (!level.key.empty()) path += (path.empty() ? "" : ".") + level.key;
    }
    return path.empty() ? "" : "key " + Quoted(path);
  }

  std::size_t KeyByte() const {
    for (auto level = open_.rbegin(); level != open_.rend(); ++level) {
      if (!level->key.empty()) return level->byte;
    }
    return 0;
  }

  void Fault(std::size_t byte, std::string reason) {
    if (!result_.fault) result_.fault = {byte, std::move(reason)};
  }

  // Stores a value in its place; null if it is not kept.
  Json* Put(Json value) {
    if (open_.empty()) return &(result_.value = std::move(value));
    Level& level = open_.back();
    if (level.value == nullptr || level.isTwice) return nullptr;
    if (level.value->is_array()) {
      level.value->push_back(std::move(value));
      return &level.value->back();
    }
    // Appends to the list of members: a look-up of the key would take linear time.
    auto& members = level.value->get_ref<Json::object_t&>();
    members.emplace_back(level.key, std::move(value));
    return &members.back().second;
  }

  bool Add(Json value) {
    Put(std::move(value));
    return true;
  }

  bool Open(Json value) {
    if (open_.size() == kDeepestJson) {
      Fault(Reached() - 1, "has brackets nested more than " + std::to_string(kDeepestJson) + " deep; remove them");
      return false;
    }
    const bool isKept = open_.size() < levels_;
    Json* const place = Put(std::move(value));
    Level level;
    if (isKept) level.value = place;
    open_.push_back(std::move(level));
    return true;
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  std::string_view text_;
  std::size_t levels_;
  const char* reached_;
  std::size_t keys_ = 0;
  std::vector<Level> open_;
  JsonText result_;
};

}  // namespace

JsonText ReadJson(std::string_view text, std::size_t levels) { return Builder(text, levels).Read(); }

std::optional<Json> JsonOf(std::string_view text) {
  JsonText read = ReadJson(text);
  if (read.fault) return std::nullopt;
  return std::move(read.value);
}

void DropByteOrderMark(std::string& text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    throw Error("the file is UTF-16; save it as UTF-8");
  }
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
}

}  // namespace orvanel::files
