#pragma once

#include <curl/curl.h>

namespace velmora::ws {

// libcurl, loaded with the first request. It brings some thirty libraries with it, and a television shall show its
// first picture before they are loaded. The members are libcurl's functions of the same names.
struct Curl {
    decltype(&::curl_easy_cleanup) easy_cleanup;
    decltype(&::curl_easy_getinfo) easy_getinfo;
    decltype(&::curl_easy_init) easy_init;
    decltype(&::curl_easy_reset) easy_reset;
    decltype(&::curl_easy_setopt) easy_setopt;
    decltype(&::curl_free) free;
    decltype(&::curl_global_init) global_init;
    decltype(&::curl_multi_add_handle) multi_add_handle;
    decltype(&::curl_multi_cleanup) multi_cleanup;
    decltype(&::curl_multi_info_read) multi_info_read;
    decltype(&::curl_multi_init) multi_init;
    decltype(&::curl_multi_perform) multi_perform;
    decltype(&::curl_multi_poll) multi_poll;
    decltype(&::curl_multi_remove_handle) multi_remove_handle;
    decltype(&::curl_multi_wakeup) multi_wakeup;
    decltype(&::curl_slist_append) slist_append;
    decltype(&::curl_slist_free_all) slist_free_all;
    decltype(&::curl_url) url;
    decltype(&::curl_url_cleanup) url_cleanup;
    decltype(&::curl_url_get) url_get;
    decltype(&::curl_url_set) url_set;

    // The initialised library. Null where it cannot be loaded, which is reported once. Any thread; the first call takes
    // some milliseconds. The library stays loaded until the process ends.
    static const Curl *get();
};

} // namespace velmora::ws
