#pragma once

#include "fakes/fakews.h"

#include <QtTest>

// One test's web service: starts clean, and fails the test when a handle was kept or given back twice.
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
