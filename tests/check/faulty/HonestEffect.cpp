// No fault at all.
#include "Base.h"

PLANT(faulty::Honest)
