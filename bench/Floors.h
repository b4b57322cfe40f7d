// What the hooks cannot be faster than: the container, store, property and platform operations that
// each makes on its scene, written straight down, step by step as the hook takes them. A decision's
// are also its comparisons: with the products, the rules, the apps of the overrides.

#pragma once

#include "bench/Scene.h"

namespace bench {

void previewFloor(Scene& scene);
void stillFloor(Scene& scene);
void sessionFloor(Scene& scene);
void resultFloor(Scene& scene);
void rawCaptureFloor(Scene& scene);
void decisionFloor(Scene& scene);
void regionFloor(Scene& scene);
void tuningFloor(Scene& scene);

}  // namespace bench
