#include "application/Source.h"

namespace Program {

Source::~Source() = default;

}  // namespace Program
