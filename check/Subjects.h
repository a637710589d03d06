/// The subjects, each from the file that bears its name.
#pragma once

#include "check/Promise.h"

namespace check {

Subject setUpPromises();
Subject parameterPromises();
Subject drawingPromises();
Subject framePromises();
Subject sizePromises();
Subject bookPromises();

}  // namespace check
