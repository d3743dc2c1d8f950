#include "outputs/TPM_Error.h"

#include "support/machine.h"

namespace veldacov {

void showTpmError(const QString& message) {
    static const QString productName = getProductName();
    writeStandardError(translate("Error Display", "%1 - Test Process Monitor: %2\n",
                                 "%1 is the product name; %2 the error message")
                           .arg(productName)
                           .arg(message));
}

} // namespace veldacov
