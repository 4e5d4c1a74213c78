// One sheet with every ring as the eye sees it.
#ifndef ORVANEL_CLI_PICTURES_CHART_SHEET_H
#define ORVANEL_CLI_PICTURES_CHART_SHEET_H

#include "cli/png.h"
#include "cli/results.h"

namespace orvanel::cli {

// A row for each acuity and a column for each gap direction; where there is one direction only, rows of several
// acuities. All rings have one magnification, which a bar tells; panels are as large as their rings need.
ColourPicture DrawChart(const Results& results);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_CHART_SHEET_H
