#include "base/Result.h"

#include <system_error>

namespace harbrix {

SystemError systemError(int errorNumber) {
    return {errorNumber, QString::fromStdString(std::generic_category().message(errorNumber))};
}

} // namespace harbrix
