// Checks arguments of the C interface, and converts them to the types of the layers below.
#ifndef ORVANEL_C_INTERFACE_ARGUMENTS_H
#define ORVANEL_C_INTERFACE_ARGUMENTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "c_interface/call.h"
#include "eye/eye.h"
#include "metrics/quality/quality.h"
#include "models/physical_settings.h"

namespace orvanel::c_interface {

// Throw ArgumentError.
void RequirePointer(const void* pointer, const char* name);
void RequireText(const char* text, const char* name);  // in UTF-8
void RequireSize(uint64_t given, std::size_t wanted, const char* name);

// A struct is there and has its size.
template <class Struct>
void RequireStruct(const Struct* given, const char* name) {
  RequirePointer(given, name);
  RequireSize(given->size, sizeof *given, name);
}

// One of the values 1 to `last`.
int RequireChoice(int32_t value, int last, const char* name);
double RequireWithin(double value, double low, double high, const char* name);

// An array of the caller's. Elements may have any alignment.
class ArrayView {
 public:
  // Throws ArgumentError for an array of another number of dimensions, or without data though it has elements.
  ArrayView(const orvanel_array& array, int dimensions, const char* name);

  std::size_t Size(int dimension) const { return static_cast<std::size_t>(array_.shape[dimension]); }
  bool HasData() const { return array_.data != nullptr; }
  // Throws ArgumentError if it has data and another shape.
  void RequireShape(std::initializer_list<std::size_t> shape) const;

  double At(std::size_t i, std::size_t j = 0) const;
  void Set(double value, std::size_t i, std::size_t j = 0, std::size_t k = 0) const;

 private:
  char* Place(std::size_t i, std::size_t j, std::size_t k) const;

  orvanel_array array_;
  const char* name_;
};

eye::Convention ConventionOf(const orvanel_convention& given);
orvanel_convention ConventionOf(const eye::Convention& convention);
eye::Side SideOf(int32_t laterality);
int32_t LateralityOf(eye::Side side);
std::optional<Nanometres> ReferenceOf(double nanometres);

// An eye of these numbers, from the first index of the scheme on. Throws what its conversion throws, and Refused for a
// number that is not finite.
eye::Eye EyeOf(const std::vector<double>& numbers, const eye::Convention& convention, Millimetres pupil, eye::Side side,
               std::optional<Nanometres> reference);

models::PhysicalSettings SettingsOf(const orvanel_settings& given);
metrics::QualityRequest QualityRequestOf(const orvanel_metrics_request& given);
int32_t NoteOf(metrics::QualityNote note);

}  // namespace orvanel::c_interface

#endif  // ORVANEL_C_INTERFACE_ARGUMENTS_H
