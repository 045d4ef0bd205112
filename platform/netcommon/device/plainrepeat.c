// C, because members in the extension's header are keywords of C++.
#include "plainrepeat.h"

#include <stdlib.h>
#include <xcb/xkb.h>

void netcommonLeaveOutRepeatedReleases(struct xcb_connection_t *connection)
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (!extension || !extension->present)
        return; // a request to a missing extension would end the connection
    const uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const xcb_xkb_per_client_flags_cookie_t cookie =
        xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, flag, flag, 0, 0, 0);
    free(xcb_xkb_per_client_flags_reply(connection, cookie, NULL));
}
