#pragma once

#include <QObject>

// Makes the panels sharp on a screen larger than the canvas. Their pictures exist in one size only, because the forms'
// style sheets slice them in pixels of the file. This filter replaces each picture by the same panel drawn by a style
// sheet, just before the widget shows for the first time. It does the same when the pictures are missing: a box without
// a panel would be transparent. Installed on the application object; GUI thread.
class SharpPanels : public QObject {
    Q_OBJECT
public:
    explicit SharpPanels(QObject *application); // its parent

    bool eventFilter(QObject *watched, QEvent *event) override;

    // The style sheet that replaces the form's own; `style` itself when it names no panel.
    static QString sharpened(const QString &style, const QString &objectName);

private:
    const bool m_hasPictures;
};
