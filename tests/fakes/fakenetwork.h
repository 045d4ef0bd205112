#pragma once

// Drives the fake of netcommon::NetworkNotify. GUI thread only.
class FakeNetwork {
public:
    static void lost();
    static void back();
};
