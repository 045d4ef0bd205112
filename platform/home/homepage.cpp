#include "homepage.h"

#include "aboutpane.h"
#include "confirmpane.h"
#include "languagepane.h"
#include "machine.h"
#include "netcommon/remotekeys.h"
#include "networkpane.h"
#include "outputpane.h"
#include "phonespane.h"
#include "rowlook.h"
#include "servicepane.h"
#include "settingpane.h"
#include "sleeppane.h"
#include "virtualkb/qtvirtualkbdlg.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include <memory>
#include <utility>

namespace home {

namespace {

constexpr QRect subjectsPlace(88, 92, 324, 520);
constexpr QRect rowsPlace(452, 186, 740, 424); // half a row more than fit: there are more below
constexpr QRect typingPlace(452, 156, 740, 456);
constexpr int subjectHeight = 40;
constexpr int rowHeight = 50;

// A volume between the rows, as the volume keys leave it, has a row of its own for as long as the pane is open.
class VolumePane : public SettingPane {
public:
    using SettingPane::SettingPane;

    void open() override
    {
        m_between = percent();
        SettingPane::open();
    }

protected:
    QList<PaneRow> makeRows() override
    {
        QList<PaneRow> rows = SettingPane::makeRows();
        if (m_between % 10 != 0) // the rows go down from 100 by 10
            rows.insert((100 - m_between) / 10 + 1,
                        {HomePage::tr("%1 percent").arg(m_between), {}, percent() == m_between, [this] {
                             set("sound/volume", QString::number(m_between));
                         }});
        return rows;
    }

private:
    int percent() const { return settings().value("sound/volume").toInt(); }

    int m_between = 100;
};

} // namespace

// The field and the keyboard. It has the focus itself, so that keys come to the keyboard first.
class HomePage::Typing : public QWidget {
public:
    Typing(HomePage *page, QLabel *title)
        : QWidget(page)
        , m_page(page)
        , m_title(title)
        , m_field(new QLineEdit(this))
        , m_keyboard(new QtVirtualKbDlg(this))
    {
        setGeometry(page->placed(typingPlace));
        setProperty("velmoraTextEntry", true); // letters and Backspace of a PC's keyboard arrive as they are
        setFocusPolicy(Qt::StrongFocus);
        m_field->setObjectName(QStringLiteral("textField"));
        m_field->setGeometry(50, 0, 640, 60);
        m_field->setFocusPolicy(Qt::NoFocus);
        m_field->setMaxLength(256);
        QFont font(QStringLiteral("Arial"));
        font.setPointSize(20);
        m_field->setFont(font);
        m_keyboard->setObjectName(QStringLiteral("keyboard"));
        m_keyboard->move(50, 80);
        connect(m_keyboard, &QtVirtualKbDlg::signalSendContext, this, [this](const QString &text) {
            const auto answered = m_question.answered;
            end();
            answered(text.trimmed());
        });
        hide();
    }

    void begin(const TextQuestion &question)
    {
        m_question = question;
        m_title->setText(question.title);
        setAccessibleName(question.title);
        m_field->setAccessibleName(question.title);
        m_field->setEchoMode(question.isSecret ? QLineEdit::Password : QLineEdit::Normal);
        m_field->setText(question.text);
        m_keyboard->enableLineEdit(m_field, false);
        show();
        m_keyboard->showWindow(false);
        m_keyboard->restoreFocus();
        setFocus();
    }

    void end()
    {
        m_keyboard->loseFocus();
        m_field->clear();
        hide();
        m_page->showPane();
        m_page->enterPane();
    }

protected:
    // What is ignored goes to the keyboard.
    void keyPressEvent(QKeyEvent *event) override { event->ignore(); }
    void keyReleaseEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Back:
            end();
            break;
        case netcommon::redKey:
            m_keyboard->changePage();
            break;
        case netcommon::greenKey:
            m_keyboard->changeMode();
            break;
        default:
            break;
        }
    }

private:
    HomePage *const m_page;
    QLabel *const m_title;
    QLineEdit *const m_field;
    QtVirtualKbDlg *const m_keyboard;
    TextQuestion m_question;
};

HomePage::HomePage(bool offersQuit, bool isFirst)
    : m_isFirst(isFirst)
{
    setObjectName(QStringLiteral("homePage"));
    addLabel("homeTitle", QRect(88, 42, 324, 48), 24, true)->setText(tr("Home"));
    m_subjects = new RowList("subjectList", placed(subjectsPlace), this);
    m_subjects->setAccessibleName(tr("Home"));
    m_title = addLabel("paneTitle", QRect(452, 42, 620, 48), 24, true);
    m_counter = addLabel("paneCounter", QRect(1080, 44, 112, 44), 15, true);
    m_counter->setProperty("isCounter", true);
    m_counter->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_text = addLabel("paneText", QRect(452, 96, 740, 88), 15);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_rows = new RowList("paneList", placed(rowsPlace), this);
    m_rows->setProperty("hasTicks", true);
    m_typing = new Typing(this, m_title);
    m_returnHint = addHint("returnHint", "Key_Return.png", tr("Return"), 16, 128);
    m_typingHints = {addHint("redHint", "Key_Red.png", tr("Symbol/Num"), 156, 184),
                     addHint("greenHint", "Key_Green.png", tr("Caps"), 352, 116)};
    addHint("homeHint", "Key_MC.png", tr("Home"), 1018, 118);
    connect(qApp, &QApplication::focusChanged, this, &HomePage::showHints);
    addPanes(offersQuit);
    connect(m_subjects, &QListWidget::currentRowChanged, this, &HomePage::openPane);
    connect(m_rows, &QListWidget::currentRowChanged, this, [this](int row) {
        const bool isLong = m_rows->count() * rowHeight > m_rows->height();
        m_counter->setText(isLong && row >= 0 ? QStringLiteral("%1/%2").arg(row + 1).arg(m_rows->count()) : QString());
    });
    m_subjects->setCurrentRow(0);
    showHints();
}

HomePage::~HomePage()
{
    qApp->disconnect(this); // its end moves the focus
}

void HomePage::addPanes(bool offersQuit)
{
    using Choices = QList<SettingPane::Choice>;
    const auto number = [](int value) { return QString::number(value); };

    add(new Pane(tr("Radio"), tr("Select starts the radio."), this), [this] { emit finished(Answer::StartRadio); });

    Choices volumes;
    for (int percent = 100; percent >= 0; percent -= 10)
        volumes += {percent ? tr("%1 percent").arg(percent) : tr("silent"), "sound/volume", number(percent)};
    volumes += {tr("All tracks equally loud"), "sound/level-tracks"};
    volumes += {tr("Keys click"), "sound/key-clicks"};
    add(new VolumePane(tr("Volume"), tr("How loud the radio plays. The volume keys change it while music plays."),
                       volumes, &m_settings, this));

    add(new SleepPane(this));

    Choices dims;
    for (const int minutes : {2, 5, 10, 20, 30, 60})
        dims += {tr("after %n minutes", nullptr, minutes), "screen/saver-minutes", number(minutes)};
    dims += {tr("never"), "screen/saver-minutes", number(0)};
    dims += {tr("Larger picture"), "screen/larger"};
    dims += {tr("Read aloud what has the focus"), "speech/enabled"};
    add(new SettingPane(tr("Screen"),
                        tr("When nobody presses a key while music plays, the picture dims.") + u' ' +
                            tr("A larger picture is drawn from the next start of the radio or of Home."),
                        dims, &m_settings, this));

    add(new OutputPane(&m_settings, this));
    add(new NetworkPane(&m_settings, QDBusConnection::systemBus(), this));
    m_service = new ServicePane(QDBusConnection::systemBus(), &m_settings, this);
    m_service->setFirst(m_isFirst);
    add(m_service);

    add(new LanguagePane(QDBusConnection::systemBus(), &m_settings, this));

    add(new PhonesPane(&m_settings, this));
    add(new AboutPane(QDBusConnection::systemBus(), &m_settings, this));

    auto *machine = new Machine(this);
    connect(machine, &Machine::known, this, [this, machine, offersQuit] {
        const int below = offersQuit ? 1 : 0;
        if (machine->maySwitchOff())
            insert(m_entries.size() - below, new ConfirmPane(tr("Switch off"), tr("The device switches off."),
                                                             tr("Switch off now"), Answer::SwitchOff, this));
        if (machine->mayRestart())
            insert(m_entries.size() - below - (machine->maySwitchOff() ? 1 : 0),
                   new ConfirmPane(tr("Restart"), tr("The device restarts. The radio comes back by itself."),
                                   tr("Restart now"), Answer::Restart, this));
    });
    if (offersQuit)
        add(new ConfirmPane(tr("Quit"), tr("Ends the radio and Home."), tr("Quit now"), Answer::Quit, this));
    machine->ask();
}

void HomePage::add(Pane *pane, const std::function<void()> &act)
{
    insert(m_entries.size(), pane, act);
}

void HomePage::insert(qsizetype place, Pane *pane, const std::function<void()> &act)
{
    m_entries.insert(place, {pane, act});
    auto item = std::make_unique<QListWidgetItem>(pane->title());
    item->setSizeHint(QSize(subjectsPlace.width(), subjectHeight));
    m_subjects->insertItem(int(place), item.release()); // the list owns it
    connect(pane, &Pane::changed, this, [this, pane] {
        if (pane == m_open)
            showPane();
    });
    connect(pane, &Pane::asks, this, &HomePage::ask);
    connect(pane, &Pane::answered, this, &HomePage::finished);
}

void HomePage::goOnFrom(const HomePage &before)
{
    m_subjects->setCurrentRow(before.m_subjects->currentRow());
    if (before.isInPane())
        enterPane();
}

void HomePage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    m_subjects->setFocus();
    if (!std::exchange(m_isFirst, false))
        return;
    for (int row = 0; row < m_entries.size(); ++row)
        if (m_entries[row].pane == m_service)
            m_subjects->setCurrentRow(row);
    enterPane();
}

void HomePage::openPane(int index)
{
    Pane *pane = index >= 0 && index < m_entries.size() ? m_entries[index].pane : nullptr;
    if (pane == m_open) // entries before it came or went
        return;
    if (m_open)
        m_open->close();
    m_open = pane;
    m_above.clear();
    m_rows->setCurrentRow(-1);
    if (pane)
        pane->open();
    showPane();
}

void HomePage::showPane()
{
    if (m_typing->isVisible() || !m_open)
        return;
    const Pane *pane = m_open;
    m_title->setText(pane->title());
    m_text->setText(pane->text());
    m_rows->setAccessibleName(pane->title());
    int before = m_rows->currentRow();
    if (pane->depth() > m_above.size()) {
        m_above += before;
        before = -1; // other rows begin at their own current one
    }
    while (pane->depth() < m_above.size())
        before = m_above.takeLast();
    int current = -1;
    m_rows->clear();
    for (const PaneRow &row : pane->rows()) {
        auto *item = new QListWidgetItem(row.text, m_rows);
        item->setSizeHint(QSize(rowsPlace.width(), rowHeight));
        item->setData(RowLook::ValueRole, row.value);
        item->setData(RowLook::TickRole, row.isCurrent);
        item->setData(Qt::AccessibleTextRole,
                      row.isCurrent ? tr("%1, chosen").arg(row.text) : QString(row.text + u' ' + row.value).trimmed());
        if (row.isCurrent)
            current = m_rows->count() - 1;
    }
    m_rows->setVisible(m_rows->count() > 0);
    if (before >= 0 && m_rows->count() > 0)
        m_rows->setCurrentRow(std::min(before, m_rows->count() - 1));
    else if (isInPane())
        m_rows->setCurrentRow(std::max(current, 0));
    else if (current >= 0)
        m_rows->scrollToItem(m_rows->item(current), QAbstractItemView::PositionAtCenter);
    if (!m_rows->isVisibleTo(this) && !m_subjects->hasFocus())
        leavePane();
}

bool HomePage::isInPane() const
{
    return m_rows->hasFocus();
}

void HomePage::enterPane()
{
    if (m_rows->count() == 0)
        return leavePane();
    int current = m_rows->currentRow();
    for (int row = m_rows->count() - 1; row >= 0 && current < 0; --row)
        if (m_rows->item(row)->data(RowLook::TickRole).toBool())
            current = row;
    m_rows->setFocus(); // makes a row current where none is
    m_rows->setCurrentRow(std::max(current, 0));
}

void HomePage::goBack()
{
    if (!m_open || !m_open->goBack())
        leavePane();
}

void HomePage::leavePane()
{
    while (m_open && m_open->goBack()) {
    }
    m_rows->setCurrentRow(-1);
    m_subjects->setFocus();
}

void HomePage::choose()
{
    if (!m_open)
        return;
    if (!isInPane()) {
        const auto act = m_entries[m_subjects->currentRow()].act;
        if (act)
            act();
        else
            enterPane();
        return;
    }
    const auto &rows = m_open->rows();
    const int row = m_rows->currentRow();
    if (row >= 0 && row < rows.size() && rows[row].choose) {
        const auto act = rows[row].choose; // the rows may be replaced by it
        act();
    }
}

void HomePage::ask(const TextQuestion &question)
{
    m_rows->hide();
    m_text->setText(QString());
    m_counter->setText(QString());
    m_typing->begin(question);
}

void HomePage::showHints()
{
    m_returnHint->setVisible(isInPane() || m_typing->isVisible());
    for (QLabel *hint : m_typingHints)
        hint->setVisible(m_typing->isVisible());
}

// The lists move on presses, which repeat; everything else acts on releases.
void HomePage::keyPressEvent(QKeyEvent *event)
{
    Page::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Right:
        if (!isInPane() && !m_typing->isVisible())
            enterPane();
        break;
    case Qt::Key_Left:
        if (isInPane())
            goBack();
        break;
    default:
        break;
    }
}

void HomePage::keyReleaseEvent(QKeyEvent *event)
{
    if (!endsPress(event) || m_typing->isVisible())
        return;
    switch (event->key()) {
    case Qt::Key_Select:
        choose();
        break;
    case Qt::Key_Back:
        if (isInPane())
            goBack();
        break;
    case Qt::Key_TopMenu:
        leavePane();
        m_subjects->setCurrentRow(0);
        break;
    default:
        break;
    }
}

} // namespace home
