#include "app/errortexts.h"

#include <QCoreApplication>

namespace {

constexpr int networkFailure = -504;
constexpr int accountInactive = 5099;

struct Row {
    int code;
    errortexts::ErrorText text;
};

// The missing blanks after the commas and the stray blank before ".Please" are deliberate: translations are looked up
// by these texts.
const Row rows[] = {
    {networkFailure,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "A network error has occurred.  Please check your network connection and try again."),
      false}},
    {5096,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "Velmora is conducting system maintenance. You will be able to listen to existing stations "
                        "while they work on their systems, but you won't be able to create new stations, submit "
                        "feedback or edit your account in any way until the maintenance is complete. Thanks for your "
                        "patience."),
      false}},
    {5097,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "Sorry,this token is invalid now .Please contact Velmora listener support at "),
      true}},
    {5098, {QT_TRANSLATE_NOOP("VelmoraParentWidget", "Invalid username or password, please try again."), false}},
    {accountInactive,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "Sorry,this account is no longer active.Please contact Velmora listener support at "),
      true}},
    {5100,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "Sorry,this account is authorized.Please contact Velmora listener support at "),
      true}},
    {5101, {QT_TRANSLATE_NOOP("VelmoraParentWidget", "Sorry, Max stations Reached, create station failed."), false}},
    {5102, {QT_TRANSLATE_NOOP("VelmoraParentWidget", "Station does not exist."), false}},
    {5107, {QT_TRANSLATE_NOOP("VelmoraParentWidget", "Invalid username"), false}},
    {5108, {QT_TRANSLATE_NOOP("VelmoraParentWidget", "Invalid password"), false}},
    {5126,
     {QT_TRANSLATE_NOOP("VelmoraParentWidget",
                        "Sorry,this token is invalid now .Please contact Velmora listener support at "),
      true}},
};

const Row *rowOf(int code)
{
    for (const Row &row : rows) {
        if (row.code == code)
            return &row;
    }
    return nullptr;
}

} // namespace

namespace errortexts {

ErrorText textOf(int code)
{
    const Row *row = rowOf(code);
    return row ? row->text : ErrorText{QT_TRANSLATE_NOOP("VelmoraParentWidget", "NULL"), false};
}

bool hasText(int code)
{
    return rowOf(code) != nullptr;
}

Reaction reactionTo(int code, Place place)
{
    switch (place) {
    case Place::Player:
        if (code == accountInactive)
            return Reaction::SignOut;
        return code == networkFailure ? Reaction::Leave : Reaction::Stay;
    case Place::Loading:
        return code == accountInactive ? Reaction::SelectAccount : Reaction::Leave;
    case Place::Account:
        break;
    }
    return Reaction::Stay;
}

} // namespace errortexts
