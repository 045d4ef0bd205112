#pragma once

#include <QObject>

// Makes the panels sharp on a screen larger than the canvas. Their pictures exist once, because the forms' style sheets
// slice them in pixels of the file; here each is exchanged for the same panel drawn by its style sheet, when its widget
// is about to show for the first time. The same where the pictures are missing: without a panel a box would show what
// lies behind it. Installed on the application object; GUI thread.
class SharpPanels : public QObject {
    Q_OBJECT
public:
    explicit SharpPanels(QObject *application); // its parent

    bool eventFilter(QObject *watched, QEvent *event) override;

    // What the form's own style sheet becomes; `style` itself when it names no panel.
    static QString sharpened(const QString &style, const QString &objectName);

private:
    const bool m_hasPictures;
};
