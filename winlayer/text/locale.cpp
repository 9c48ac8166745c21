#include "winlayer/text/locale.h"

#include "winlayer/base/system_settings.h"

namespace winlayer {

namespace {

constexpr Locale german = {
    ",",
    ".",
    "dd.MM.yyyy",
    "HH:mm:ss",
    "",
    "",
    {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"},
    {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"},
    {"Januar", "Februar", "März", "April", "Mai", "Juni", "Juli", "August", "September", "Oktober",
     "November", "Dezember"},
    {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"},
};

constexpr Locale english = {
    ".",
    ",",
    "M/d/yyyy",
    "h:mm:ss tt",
    "AM",
    "PM",
    {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"},
    {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"},
    {"January", "February", "March", "April", "May", "June", "July", "August", "September", "October",
     "November", "December"},
    {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"},
};

}  // namespace

const Locale* findLocale(const SystemSettings& settings, LCID id) {
    if (id == LOCALE_USER_DEFAULT || id == LOCALE_SYSTEM_DEFAULT) {
        id = settings.language;
    }
    return id == 0x0407 ? &german : id == 0x0409 ? &english : nullptr;
}

}  // namespace winlayer
