#pragma once

#include "fakes/fakews.h"

#include <QtTest>

// The web service of one test: starts empty, and fails the test if a handle was leaked or released twice.
class FakeWsFixture {
public:
    explicit FakeWsFixture(FakeWs::Delivery delivery = FakeWs::Delivery::Thread)
        : ws(FakeWs::instance())
    {
        ws.reset(delivery);
    }
    ~FakeWsFixture()
    {
        const QString left = ws.leftovers();
        if (!left.isEmpty())
            QTest::qFail(qPrintable(left), __FILE__, __LINE__);
        ws.reset();
    }
    FakeWsFixture(const FakeWsFixture &) = delete;
    FakeWsFixture &operator=(const FakeWsFixture &) = delete;

    FakeWs &ws;
};
