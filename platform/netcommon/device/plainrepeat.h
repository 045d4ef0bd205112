#pragma once

#ifdef __cplusplus
extern "C" {
#endif

struct xcb_connection_t;

// Asks an X server to leave out the releases between the repeated presses of a held key, for this program alone.
void netcommonLeaveOutRepeatedReleases(struct xcb_connection_t *connection);

#ifdef __cplusplus
}
#endif
