#include "application/session/Source.h"

namespace Program {

Source::~Source() = default;

}  // namespace Program
