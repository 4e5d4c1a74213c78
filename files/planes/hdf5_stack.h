// HDF5 files with the planes of many eyes, one behind the other.
#ifndef ORVANEL_FILES_PLANES_HDF5_STACK_H
#define ORVANEL_FILES_PLANES_HDF5_STACK_H

#include <memory>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

// A kind of plane that each eye has.
struct StackedPlane {
  std::string name, description, unit, view;
};

// A plane as the file stores it. Several threads may do this at a time.
std::string CompressedPlane(const double* samples);

// A dataset of eyes x 256 x 256 doubles for each kind of plane, and datasets of one number an eye. In the oldest
// version of the format and without times, so that the same planes give the same bytes. One thread uses the library at
// a time.
class Hdf5Stack {
 public:
  // Throws Error, as the others do, where the library refuses.
  explicit Hdf5Stack(const std::vector<StackedPlane>& kinds);
  Hdf5Stack(const Hdf5Stack&) = delete;
  Hdf5Stack& operator=(const Hdf5Stack&) = delete;
  ~Hdf5Stack();

  // The next eye's planes, one of each kind; for an eye without any, which leaves not-a-number, an empty list.
  void Add(const std::vector<std::string>& compressed);

  // One number for each eye.
  void AddNumbers(const std::string& name, const std::string& description, const std::vector<double>& numbers);

  // The bytes of the file, to be called once, at the end.
  std::string Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_HDF5_STACK_H
