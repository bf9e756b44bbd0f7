#include "shell/designtitle.h"

namespace zelk {

void designtitle_show() {}

} // namespace zelk
