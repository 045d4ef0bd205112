// Prints the size of the X display's screen: "1280x720". Links no more than it needs: it starts in a moment, where a
// process with Qt's platform in it would take as long as the radio itself.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace {

struct Size {
    int width;
    int height;
};

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
Reply<T> owned(T *reply)
{
    return {reply, &std::free};
}

// The mode of the primary output, as Qt chooses its primary screen; else the whole X screen.
Size outputSize(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    const Size whole{screen.width_in_pixels, screen.height_in_pixels};
    const auto *extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return whole;
    const auto primaryCookie = xcb_randr_get_output_primary(connection, screen.root);
    const auto resourcesCookie = xcb_randr_get_screen_resources_current(connection, screen.root);
    const auto primary = owned(xcb_randr_get_output_primary_reply(connection, primaryCookie, nullptr));
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(connection, resourcesCookie, nullptr));
    if (!resources)
        return whole;
    std::vector<xcb_randr_output_t> outputs;
    if (primary && primary->output)
        outputs.push_back(primary->output);
    const auto *first = xcb_randr_get_screen_resources_current_outputs(resources.get());
    outputs.insert(outputs.end(), first, first + resources->num_outputs);
    for (const xcb_randr_output_t output : outputs) {
        const auto outputCookie = xcb_randr_get_output_info(connection, output, resources->config_timestamp);
        const auto info = owned(xcb_randr_get_output_info_reply(connection, outputCookie, nullptr));
        if (!info || !info->crtc)
            continue;
        const auto crtcCookie = xcb_randr_get_crtc_info(connection, info->crtc, resources->config_timestamp);
        const auto crtc = owned(xcb_randr_get_crtc_info_reply(connection, crtcCookie, nullptr));
        if (crtc && crtc->width && crtc->height)
            return {crtc->width, crtc->height};
    }
    return whole;
}

} // namespace

int main()
{
    int number = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, &number),
                                                                                  &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()))
        return 1;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; screens.rem && number > 0; --number)
        xcb_screen_next(&screens);
    if (!screens.rem)
        return 1;
    const Size size = outputSize(connection.get(), *screens.data);
    std::printf("%dx%d\n", size.width, size.height);
    return 0;
}
