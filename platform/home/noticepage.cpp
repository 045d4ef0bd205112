#include "noticepage.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace home {

namespace {

QString titleOf(NoticePage::Kind kind)
{
    switch (kind) {
    case NoticePage::Kind::Waiting:
        return NoticePage::tr("One moment");
    case NoticePage::Kind::Again:
        return NoticePage::tr("The radio needs a key");
    case NoticePage::Kind::Stopped:
        return NoticePage::tr("The radio has stopped");
    }
    return {};
}

QString textOf(NoticePage::Kind kind)
{
    switch (kind) {
    case NoticePage::Kind::Waiting:
        return NoticePage::tr("The radio cannot reach its service. It starts again as soon as it can.");
    case NoticePage::Kind::Again:
        return NoticePage::tr("The radio has failed several times although its service answers.");
    case NoticePage::Kind::Stopped:
        return NoticePage::tr("The radio has failed several times. Home, About keeps the reports.");
    }
    return {};
}

} // namespace

NoticePage::NoticePage(Kind kind, const ServicePlace &place)
{
    setObjectName(QStringLiteral("noticePage"));
    auto *symbol = new QLabel(this);
    symbol->setObjectName(QStringLiteral("symbolLabel"));
    symbol->setGeometry(placed(QRect(104, 190, 240, 240)));
    symbol->setPixmap(QPixmap(QStringLiteral(":/images/Symbol.png")));
    addLabel("titleLabel", QRect(384, 148, 808, 64), 30, true)->setText(titleOf(kind));
    QLabel *text = addLabel("textLabel", QRect(384, 236, 808, 64), 18);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    text->setText(textOf(kind));
    QLabel *state = addLabel("stateLabel", QRect(384, 316, 808, 60), 15);
    state->setProperty("isCaption", true);
    state->setWordWrap(true);
    state->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_again = addButton("againButton", tr("Try again"), QRect(384, 408, 360, 60));
    m_settings = addButton("homeButton", tr("Home"), QRect(768, 408, 360, 60));
    addHint("homeHint", "Key_MC.png", tr("Home"), 1018, 118);
    connect(m_again, &QPushButton::clicked, this, &NoticePage::tryAgain);
    connect(m_settings, &QPushButton::clicked, this, &NoticePage::wantsHome);
    m_again->setFocus();
    if (kind != Kind::Waiting)
        return;
    m_waiting = new Waiting(place, this);
    connect(m_waiting, &Waiting::healthy, this, [this] { emit finished(Answer::StartRadio); });
    connect(m_waiting, &Waiting::failed, this,
            [state](ServiceHealth::Result result) { state->setText(ServiceHealth::wordsFor(result)); });
    m_waiting->askNow();
}

void NoticePage::tryAgain()
{
    if (m_waiting)
        m_waiting->askNow();
    else
        emit finished(Answer::StartRadio);
}

void NoticePage::keyPressEvent(QKeyEvent *event)
{
    Page::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        m_again->setFocus();
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        m_settings->setFocus();
        break;
    case Qt::Key_TopMenu:
        emit wantsHome();
        break;
    default:
        break;
    }
}

void NoticePage::keyReleaseEvent(QKeyEvent *event)
{
    if (!endsPress(event) || event->key() != Qt::Key_Select)
        return;
    if (m_settings->hasFocus())
        m_settings->click();
    else
        m_again->click();
}

} // namespace home
