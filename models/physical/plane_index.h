// Indexes planes in memory, and rounds their rows up to whole blocks.
#ifndef ORVANEL_MODELS_PHYSICAL_PLANE_INDEX_H
#define ORVANEL_MODELS_PHYSICAL_PLANE_INDEX_H

#include <cstddef>

#include "models/physical/kernels/kernels.h"

namespace orvanel::physical {

// Of a row-major plane; At(rows, 0, columns) is its size.
inline std::size_t At(int row, int column, int columns) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
}

// The least number of columns in whole blocks of the kernels.
inline int WholeBlocks(int columns) { return (columns + kChordBlock - 1) / kChordBlock * kChordBlock; }

// The sum over the lanes of kChordBlock doubles that kernels leave to the caller.
inline double SumOfLanes(const double* l) { return ((l[0] + l[1]) + (l[2] + l[3])) + ((l[4] + l[5]) + (l[6] + l[7])); }

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_PLANE_INDEX_H
