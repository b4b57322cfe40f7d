// The benchmark: how fast the metadata container, the hooks and the log gate are, as ratios of one
// run.

#include <malloc.h>

#include "bench/Cells.h"
#include "bench/Tables.h"

int main(int argc, char** argv) {
  // The heap must not shrink and grow under a row that takes and returns its last block.
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  bench::addContainerCells();
  bench::addHookCells();
  bench::addLogGateCells();
  return bench::runCells(argc, argv);
}
