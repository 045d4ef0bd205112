#include "mediamodule.h"

#include <QDebug>

#include <dlfcn.h>

namespace netcommon {

namespace {

// It lies in libNetCommon's folder, wherever that was loaded from. It is never unloaded: the sound system has threads.
const MediaModule &load()
{
    Dl_info library{};
    if (::dladdr(reinterpret_cast<void *>(&load), &library) == 0)
        qFatal("NetCommon,media module,the library does not know its own place.");
    QByteArray path(library.dli_fname);
    path = path.left(path.lastIndexOf('/') + 1) + NETCOMMON_MEDIA_MODULE;
    void *const module = ::dlopen(path.constData(), RTLD_LAZY | RTLD_LOCAL);
    const auto entry =
        module ? reinterpret_cast<decltype(&netcommonMediaModule)>(::dlsym(module, "netcommonMediaModule")) : nullptr;
    if (!entry)
        qFatal("NetCommon,media module,%s", ::dlerror());
    return *entry();
}

} // namespace

const MediaModule &mediaModule()
{
    static const MediaModule &module = load();
    return module;
}

} // namespace netcommon
