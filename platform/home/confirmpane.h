#pragma once

#include "pane.h"

namespace home {

// One row that ends Home with this answer.
class ConfirmPane : public Pane {
    Q_OBJECT
public:
    ConfirmPane(const QString &title, const QString &text, const QString &row, Answer answer, QObject *parent)
        : Pane(title, text, parent)
    {
        setRows({PaneRow{row, {}, false, [this, answer] { emit answered(answer); }}});
    }
};

} // namespace home
