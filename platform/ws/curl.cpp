#include "curl.h"

#include <cstdio>
#include <dlfcn.h>

namespace velmora::ws {

namespace {

constexpr char libraryName[] = "libcurl.so.4";

template <typename Function>
bool find(void *library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

bool load(Curl &curl)
{
    void *const library = ::dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
    const bool isLoaded =
        library && find(library, "curl_easy_cleanup", curl.easy_cleanup) &&
        find(library, "curl_easy_getinfo", curl.easy_getinfo) && find(library, "curl_easy_init", curl.easy_init) &&
        find(library, "curl_easy_reset", curl.easy_reset) && find(library, "curl_easy_setopt", curl.easy_setopt) &&
        find(library, "curl_free", curl.free) && find(library, "curl_global_init", curl.global_init) &&
        find(library, "curl_multi_add_handle", curl.multi_add_handle) &&
        find(library, "curl_multi_cleanup", curl.multi_cleanup) &&
        find(library, "curl_multi_info_read", curl.multi_info_read) &&
        find(library, "curl_multi_init", curl.multi_init) && find(library, "curl_multi_perform", curl.multi_perform) &&
        find(library, "curl_multi_poll", curl.multi_poll) &&
        find(library, "curl_multi_remove_handle", curl.multi_remove_handle) &&
        find(library, "curl_multi_wakeup", curl.multi_wakeup) &&
        find(library, "curl_slist_append", curl.slist_append) &&
        find(library, "curl_slist_free_all", curl.slist_free_all) && find(library, "curl_url", curl.url) &&
        find(library, "curl_url_cleanup", curl.url_cleanup) && find(library, "curl_url_get", curl.url_get) &&
        find(library, "curl_url_set", curl.url_set) && curl.global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!isLoaded) {
        const char *const reason = ::dlerror();
        std::fprintf(stderr, "libvelmora_ws: %s cannot be used: %s\n", libraryName, reason ? reason : "no start");
    }
    return isLoaded;
}

} // namespace

const Curl *Curl::get()
{
    static Curl curl{};
    static const bool isLoaded = load(curl);
    return isLoaded ? &curl : nullptr;
}

} // namespace velmora::ws
