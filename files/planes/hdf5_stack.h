// HDF5 writer for the planes of many eyes, stacked by eye.
#ifndef ORVANEL_FILES_PLANES_HDF5_STACK_H
#define ORVANEL_FILES_PLANES_HDF5_STACK_H

#include <memory>
#include <string>
#include <vector>

#include "base/layers.h"
#include "targets/plane.h"

namespace orvanel::files {

// A kind of plane; each eye has one.
struct StackedPlane {
  std::string name, description, unit, view;
  int columns, rows;
};

// A plane compressed as the file stores it. Thread-safe.
std::string CompressedPlane(const Plane& plane);

// A dataset of eyes x rows x columns doubles for each kind of plane, and datasets of one number per eye. The format has
// the oldest version and no times, so that the same planes give the same bytes. One thread at a time uses the library.
class Hdf5Stack {
 public:
  // All members throw Error if the library reports one.
  explicit Hdf5Stack(const std::vector<StackedPlane>& kinds);
  Hdf5Stack(const Hdf5Stack&) = delete;
  Hdf5Stack& operator=(const Hdf5Stack&) = delete;
  ~Hdf5Stack();

  // Adds the next eye's planes, one of each kind. An empty list adds an eye of NaN.
  void Add(const std::vector<std::string>& compressed);

  // Adds a dataset with one number for each eye.
  void AddNumbers(const std::string& name, const std::string& description, const std::vector<double>& numbers);

  // The bytes of the file; call it once, at the end.
  std::string Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_HDF5_STACK_H
