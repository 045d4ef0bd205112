#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

class QJsonObject;

namespace netcommon {

// What a telephone shows of the radio, and what only a telephone does: it types whole texts and chooses stations by
// name. Everything is read from the screens as for `velmora-menu status`, and acts as keys or an input method would;
// the screens know nothing of it. GUI thread.
class PhoneView {
public:
    // Adds its members; volume and sleep timer are not among them. `lengthSeconds` of the track, 0: not known.
    void describe(QJsonObject &shown, int lengthSeconds);
    // Each returns why it was not done; empty: done.
    QString playStation(int row, const QString &name);
    QString setField(int number, const QString &text);
    QString finishField(int number);

private:
    int fieldNumber();
    QStringList stationNames(const QWidget *playingScreen);

    QPointer<QWidget> m_field; // the widget that took typed text last; null: none
    int m_fieldOfKeyboard = 0; // which of the on-screen keyboard's fields that was
    int m_number = 0;          // of the field; counts up
    QStringList m_stations;    // as they were last; the row with the focus scrolls, and its own text is blank
};

} // namespace netcommon
