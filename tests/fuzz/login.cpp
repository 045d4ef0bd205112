// The login file of a removable medium.
#include "account/loginfile.h"
#include "scratchfile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto path = fuzz::onlyFile("login", data, size);
    const auto login = LoginFile::read(QString::fromStdString(path.string()));
    fuzz::require(login.has_value());
    fuzz::require(login->email.size() <= 31 && login->password.size() <= 31);
    return 0;
}
