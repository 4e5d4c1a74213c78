// Compiles the parts of the kernels with the flags of the tests. Parts that are not in a table are tested through
// these; variant_test.cpp tests that all tables have their bits.
#ifndef ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H
#define ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H

#define ORVANEL_VARIANT under_test
// Whole kernels go unused here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include "optics/kernels/modulation.h"
#include "optics/kernels/pupil.h"
#pragma GCC diagnostic pop

#endif  // ORVANEL_TESTS_OPTICS_KERNELS_UNDER_TEST_H
