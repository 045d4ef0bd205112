#pragma once

#include "app/velmoraparentwidget.h"

#include <QPushButton>
#include <QStringList>
#include <QTest>

// A screen with one button, whose private slots can be called; notes what the root widget tells it.
class ProbeScreen : public VelmoraParentWidget {
    Q_OBJECT
public:
    explicit ProbeScreen(QWidget *parent = nullptr)
        : VelmoraParentWidget(parent)
        , other(new QPushButton(this))
        , button(new QPushButton(this))
    {
        resize(1280, 720);
        for (QPushButton *each : {other, button}) {
            each->setFocusPolicy(Qt::ClickFocus);
            each->setAutoDefault(false);
        }
        button->setFocus();
    }
    void loseFocus(bool fgMsgbox) override
    {
        VelmoraParentWidget::loseFocus(fgMsgbox);
        notes.append(fgMsgbox ? QStringLiteral("lose box") : QStringLiteral("lose"));
    }
    void resetFocus(bool fgMsgbox) override
    {
        VelmoraParentWidget::resetFocus(fgMsgbox);
        notes.append(QStringLiteral("reset"));
    }

    void call(const char *slot) { QVERIFY2(QMetaObject::invokeMethod(this, slot), slot); }

    QPushButton *other;
    QPushButton *button; // has the focus at the start
    QStringList notes;
};
