// Writes HDF5 to memory through the library's C interface.
#include "files/planes/hdf5.h"

#include <hdf5.h>

#include "files/planes/hdf5_handle.h"

namespace orvanel::files {
namespace {

void WriteFact(hid_t place, const Fact& fact) {
  if (const auto* text = std::get_if<std::string>(&fact.value)) {
    WriteText(place, fact.name, *text);
  } else if (const auto* number = std::get_if<double>(&fact.value)) {
    const Handle space(H5Screate(H5S_SCALAR), H5Sclose);
    WriteAttribute(place, fact.name, H5T_IEEE_F64LE, space, H5T_NATIVE_DOUBLE, number);
  } else {
    const auto& numbers = std::get<std::vector<double>>(fact.value);
    const hsize_t count = numbers.size();
    const Handle space(H5Screate_simple(1, &count, nullptr), H5Sclose);
    WriteAttribute(place, fact.name, H5T_IEEE_F64LE, space, H5T_NATIVE_DOUBLE, numbers.data());
  }
}

// One chunk, compressed.
void WritePlane(hid_t file, const NamedPlane& plane) {
  const hsize_t shape[] = {static_cast<hsize_t>(plane.samples->rows()), static_cast<hsize_t>(plane.samples->columns())};
  constexpr unsigned kLevel = 6;
  const Handle space(H5Screate_simple(2, shape, nullptr), H5Sclose);
  const Handle properties(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
  Require(H5Pset_obj_track_times(properties, false));
  Require(H5Pset_chunk(properties, 2, shape));
  Require(H5Pset_shuffle(properties));
  Require(H5Pset_deflate(properties, kLevel));
  const Handle dataset(
      H5Dcreate2(file, plane.name.c_str(), H5T_IEEE_F64LE, space, H5P_DEFAULT, properties, H5P_DEFAULT), H5Dclose);
  Require(H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, plane.samples->data()));
  WriteText(dataset, "description", plane.description);
  WriteText(dataset, "units", plane.unit);
  for (const auto* facts : {&plane.spacings, &plane.view}) {
    for (const Fact& fact : *facts) WriteFact(dataset, fact);
  }
}

}  // namespace

std::string EncodeHdf5(const PlaneSet& set) {
  const Handle file = CreateInMemory();
  for (const Fact& fact : set.facts) WriteFact(file, fact);
  for (const NamedPlane& plane : set.planes) WritePlane(file, plane);
  return ImageOf(file);
}

}  // namespace orvanel::files
