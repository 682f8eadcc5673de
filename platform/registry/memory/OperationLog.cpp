#include "platform/registry/memory/OperationLog.h"

#include <numeric>
#include <stdexcept>

namespace MemoryRegistry {

OperationLog OperationLog::_instance;

std::optional<Failure> OperationLog::judge(Operation operation) {
  const bool meant = _operation ? *_operation == operation : canFail(operation);
  if (!meant) return std::nullopt;
  if (_callsLeft > 0) {
    --_callsLeft;
    return std::nullopt;
  }
  _armed = _repeat == Repeat::FromThenOn;
  return _failure;
}

std::uint64_t OperationLog::calls() const {
  return std::accumulate(_calls.begin(), _calls.end(), std::uint64_t{0});
}

void OperationLog::fail(std::optional<Operation> operation, std::uint64_t n, Repeat repeat,
                        Failure failure) {
  if (n == 0) throw std::invalid_argument("calls are counted from 1");
  if (operation && !canFail(*operation))
    throw std::invalid_argument("an operation that can't fail");
  _operation = operation;
  _callsLeft = n - 1;
  _repeat = repeat;
  _failure = failure;
  _armed = true;
}

void OperationLog::reset() { *this = OperationLog(); }

}  // namespace MemoryRegistry
