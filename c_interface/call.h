// Runs the body of a function of the C interface: exceptions become a status and the last error of the thread.
#ifndef ORVANEL_C_INTERFACE_CALL_H
#define ORVANEL_C_INTERFACE_CALL_H

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/layers.h"
#include "orvanel/c_interface.h"

namespace orvanel::files {}

namespace orvanel::c_interface {
using namespace files;

// A detail of an error.
struct Field {
  Field(std::string itsName, std::string itsText, double itsNumber = std::numeric_limits<double>::quiet_NaN())
      : name(std::move(itsName)), text(std::move(itsText)), number(itsNumber) {}
  Field(std::string itsName, double itsNumber);

  std::string name, text;
  double number;
};

struct Reason {
  orvanel_status status = ORVANEL_OK;
  std::string code, text;
  std::vector<Field> fields;
};

// A reason, and its details as callers get them. Not to be moved after Keep.
class KeptReason {
 public:
  KeptReason() = default;
  KeptReason(const KeptReason&) = delete;
  KeptReason& operator=(const KeptReason&) = delete;

  void Keep(Reason reason);
  void KeepNoMemory() noexcept;  // allocates nothing
  void Fill(orvanel_error& error) const;
  orvanel_status status() const { return status_; }

 private:
  orvanel_status status_ = ORVANEL_OK;
  bool noMemory_ = false;
  Reason reason_;
  std::vector<orvanel_field> fields_;
};

// Of this thread.
KeptReason& LastReason();

// An argument breaks the rules of the header.
class ArgumentError : public Error {
 public:
  ArgumentError(std::string itsCode, const std::string& what, std::vector<Field> itsFields = {})
      : Error(what), code(std::move(itsCode)), fields(std::move(itsFields)) {}

  std::string code;
  std::vector<Field> fields;
};

// Ends a call with a reason.
class Refused : public Error {
 public:
  explicit Refused(Reason itsReason) : Error(itsReason.text), reason(std::move(itsReason)) {}

  Reason reason;
};

// The reason of the exception that is handled now.
//   status  of an error whose class has none
Reason ReasonOfException(orvanel_status status);

// Keeps the reason of the exception that is handled now, and returns its status.
orvanel_status KeepException(orvanel_status status) noexcept;

template <class Body>
orvanel_status Call(const Body& body, orvanel_status status = ORVANEL_INVALID_EYE) noexcept {
  try {
    body();
    return ORVANEL_OK;
  } catch (...) {
    return KeepException(status);
  }
}

// Ends the call if the caller's function wants that; null for none.
void Report(orvanel_progress progress, void* data, uint64_t done, uint64_t total);

}  // namespace orvanel::c_interface

#endif  // ORVANEL_C_INTERFACE_CALL_H
