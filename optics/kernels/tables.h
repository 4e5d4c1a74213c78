// Declares the constants of the transforms.
#ifndef ORVANEL_OPTICS_KERNELS_TABLES_H
#define ORVANEL_OPTICS_KERNELS_TABLES_H

#include "optics/kernels/kernels.h"

namespace orvanel {

// Made at the first call, by the library's own sine and cosine.
const Tables& TransformTables();

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_KERNELS_TABLES_H
