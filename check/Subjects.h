/// The subjects, each from the file that bears its name.
#pragma once

#include "check/Promise.h"

namespace check {

Subject setUpPromises();
Subject parameterPromises();
Subject drawingPromises();
Subject framePromises();
Subject sizePromises();
Subject layerPromises();
Subject valuePromises();
Subject sequencePromises();
Subject failurePromises();
Subject threadPromises();
Subject limitPromises();
Subject lifePromises();
Subject bookPromises();

}  // namespace check
