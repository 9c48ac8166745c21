#include "winlayer/text/system_messages.h"

#include <algorithm>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

struct SystemMessage {
    DWORD code;
    const char* english;
    const char* german;
};

constexpr SystemMessage messages[] = {
    {NO_ERROR, "The operation completed without an error.", "Der Vorgang wurde ohne Fehler beendet."},
    {ERROR_INVALID_FUNCTION, "This function does not exist.", "Diese Funktion gibt es nicht."},
    {ERROR_FILE_NOT_FOUND, "The file cannot be found.", "Die Datei wurde nicht gefunden."},
    {ERROR_PATH_NOT_FOUND, "The path cannot be found.", "Der Pfad wurde nicht gefunden."},
    {ERROR_TOO_MANY_OPEN_FILES, "Too many files are open.", "Es sind zu viele Dateien geöffnet."},
    {ERROR_ACCESS_DENIED, "Access was denied.", "Der Zugriff wurde verweigert."},
    {ERROR_INVALID_HANDLE, "The handle is not valid.", "Das Handle ist ungültig."},
    {ERROR_NOT_ENOUGH_MEMORY, "There is not enough memory for this operation.",
     "Für diesen Vorgang ist nicht genug Speicher vorhanden."},
    {ERROR_BAD_FORMAT, "The file is not a program that can run here.",
     "Die Datei ist kein Programm, das hier läuft."},
    {ERROR_INVALID_DATA, "The data is not valid.", "Die Daten sind ungültig."},
    {ERROR_INVALID_DRIVE, "There is no such drive.", "Dieses Laufwerk gibt es nicht."},
    {ERROR_CURRENT_DIRECTORY, "The current directory cannot be removed.",
     "Das aktuelle Verzeichnis kann nicht entfernt werden."},
    {ERROR_NO_MORE_FILES, "There are no more files.", "Es gibt keine weiteren Dateien."},
    {ERROR_WRITE_PROTECT, "The medium is write-protected.", "Der Datenträger ist schreibgeschützt."},
    {ERROR_NOT_READY, "The device is not ready.", "Das Gerät ist nicht bereit."},
    {ERROR_CRC, "The data failed its checksum.", "Die Prüfsumme der Daten stimmt nicht."},
    {ERROR_BAD_LENGTH, "The length given for a block of data is wrong.",
     "Die angegebene Länge eines Datenblocks ist falsch."},
    {ERROR_SEEK, "The drive cannot reach the place asked for on the medium.",
     "Das Laufwerk kann die gesuchte Stelle des Datenträgers nicht anfahren."},
    {ERROR_SECTOR_NOT_FOUND, "The drive cannot find the sector asked for.",
     "Das Laufwerk kann den gesuchten Sektor nicht finden."},
    {ERROR_WRITE_FAULT, "Writing to the device failed.", "Das Schreiben auf das Gerät ist fehlgeschlagen."},
    {ERROR_READ_FAULT, "Reading from the device failed.", "Das Lesen vom Gerät ist fehlgeschlagen."},
    {ERROR_GEN_FAILURE, "The device does not work.", "Das Gerät arbeitet nicht."},
    {ERROR_SHARING_VIOLATION, "Another process is using the file.",
     "Ein anderer Prozess verwendet die Datei gerade."},
    {ERROR_HANDLE_EOF, "The end of the file has been reached.", "Das Ende der Datei ist erreicht."},
    {ERROR_NOT_SUPPORTED, "The request is not supported.", "Die Anforderung wird nicht unterstützt."},

    {ERROR_BAD_NETPATH, "The network path cannot be found.", "Der Netzwerkpfad wurde nicht gefunden."},
    {ERROR_FILE_EXISTS, "The file is there already.", "Die Datei ist bereits vorhanden."},
    {ERROR_CANNOT_MAKE, "The directory or file cannot be made.",
     "Das Verzeichnis oder die Datei kann nicht angelegt werden."},
    {ERROR_INVALID_PARAMETER, "A parameter is wrong.", "Ein Parameter ist falsch."},
    {ERROR_OPEN_FAILED, "The file cannot be opened.", "Die Datei kann nicht geöffnet werden."},
    {ERROR_BUFFER_OVERFLOW, "The name is too long.", "Der Name ist zu lang."},
    {ERROR_DISK_FULL, "There is not enough room on the medium.",
     "Auf dem Datenträger ist nicht genug Platz."},
    {ERROR_CALL_NOT_IMPLEMENTED, "This system does not offer the function.",
     "Dieses System bietet die Funktion nicht an."},
    {ERROR_INSUFFICIENT_BUFFER, "The memory area passed is too small.",
     "Der übergebene Speicherbereich ist zu klein."},
    {ERROR_INVALID_NAME, "The name of the file, directory or volume is spelled wrongly.",
     "Der Name der Datei, des Verzeichnisses oder des Datenträgers ist falsch geschrieben."},
    {ERROR_MOD_NOT_FOUND, "The module cannot be found.", "Das Modul wurde nicht gefunden."},
    {ERROR_PROC_NOT_FOUND, "The procedure cannot be found.", "Die Prozedur wurde nicht gefunden."},
    {ERROR_NEGATIVE_SEEK, "The file position would lie before the start of the file.",
     "Die Dateiposition läge vor dem Anfang der Datei."},
    {ERROR_DIR_NOT_ROOT, "The directory is not the root of a drive.",
     "Das Verzeichnis ist nicht das Stammverzeichnis eines Laufwerks."},
    {ERROR_DIR_NOT_EMPTY, "The directory is not empty.", "Das Verzeichnis ist nicht leer."},

    {ERROR_LABEL_TOO_LONG, "The volume label is too long.", "Die Datenträgerbezeichnung ist zu lang."},
    {ERROR_BAD_PATHNAME, "The path is not valid.", "Der Pfad ist ungültig."},
    {ERROR_BUSY, "What was asked for is in use.", "Die angeforderte Ressource wird gerade verwendet."},
    {ERROR_ALREADY_EXISTS, "An object of this name exists already.",
     "Ein Objekt dieses Namens ist bereits vorhanden."},
    {ERROR_BAD_EXE_FORMAT, "The file is not a module that can be loaded.",
     "Die Datei ist kein Modul, das geladen werden kann."},
    {ERROR_FILENAME_EXCED_RANGE, "The file name or its extension is too long.",
     "Der Dateiname oder seine Erweiterung ist zu lang."},

    {ERROR_FILE_TOO_LARGE, "The file is too large.", "Die Datei ist zu groß."},
    {ERROR_MORE_DATA, "There are more data.", "Es sind weitere Daten vorhanden."},
    {ERROR_NO_MORE_ITEMS, "There are no more items.", "Es gibt keine weiteren Einträge."},
    {ERROR_DIRECTORY, "The name is not that of a directory.", "Der Name ist nicht der eines Verzeichnisses."},
    {ERROR_MR_MID_NOT_FOUND, "The system has no text for this message number.",
     "Das System hat keinen Text für diese Meldungsnummer."},
    {ERROR_IO_PENDING, "The overlapped operation is in progress.", "Der überlappende Vorgang ist im Gange."},
    {ERROR_INVALID_FLAGS, "The flags are not valid.", "Die Schalter sind ungültig."},
    {ERROR_UNRECOGNIZED_VOLUME, "The medium carries no file system that the system knows.",
     "Der Datenträger enthält kein bekanntes Dateisystem."},

    {ERROR_FILE_INVALID, "The medium was changed, so that the open file is no longer valid.",
     "Der Datenträger wurde gewechselt, die geöffnete Datei ist nicht mehr gültig."},
    {ERROR_NO_TOKEN, "There is no access token.", "Es gibt kein Zugriffstoken."},
    {ERROR_BADKEY, "The registry key is not valid.", "Der Registrierungsschlüssel ist ungültig."},
    {ERROR_KEY_DELETED, "The registry key is marked for deletion.",
     "Der Registrierungsschlüssel ist zum Löschen vorgemerkt."},
    {ERROR_NO_UNICODE_TRANSLATION, "A character has no counterpart in the other code page.",
     "Ein Zeichen hat in der anderen Zeichentabelle keine Entsprechung."},
    {ERROR_DLL_INIT_FAILED, "A module refused to start.", "Ein Modul hat den Start verweigert."},
    {ERROR_IO_DEVICE, "The device reported an error during the transfer.",
     "Das Gerät hat bei der Übertragung einen Fehler gemeldet."},
    {ERROR_NO_ASSOCIATION, "No program is known that opens this kind of file.",
     "Es ist kein Programm bekannt, das diese Art von Datei öffnet."},
    {ERROR_APP_WRONG_OS, "The program is meant for another operating system.",
     "Das Programm ist für ein anderes Betriebssystem bestimmt."},
    {ERROR_BAD_DEVICE, "The device name is not valid.", "Der Gerätename ist ungültig."},
    {ERROR_INVALID_SID, "The security identifier is not valid.", "Die Sicherheitskennung ist ungültig."},

    {ERROR_FILE_CORRUPT, "The file or directory is damaged and cannot be read.",
     "Die Datei oder das Verzeichnis ist beschädigt und nicht lesbar."},
    {ERROR_INVALID_WINDOW_HANDLE, "The window handle is not valid.", "Das Fensterhandle ist ungültig."},
    {ERROR_TLW_WITH_WSCHILD, "A child window cannot be made without a parent.",
     "Ein untergeordnetes Fenster kann nicht ohne übergeordnetes angelegt werden."},
    {ERROR_CANNOT_FIND_WND_CLASS, "The window class was not found.",
     "Die Fensterklasse wurde nicht gefunden."},
    {ERROR_CLASS_ALREADY_EXISTS, "The window class exists already.",
     "Die Fensterklasse ist schon vorhanden."},
    {ERROR_CLASS_DOES_NOT_EXIST, "There is no such window class.", "Diese Fensterklasse gibt es nicht."},
    {ERROR_CLASS_HAS_WINDOWS, "The window class still has open windows.",
     "Die Fensterklasse hat noch offene Fenster."},
    {ERROR_INVALID_INDEX, "The index is not valid.", "Der Index ist ungültig."},
    {ERROR_WINDOW_NOT_DIALOG, "The window is no dialog.", "Das Fenster ist kein Dialogfeld."},
    {ERROR_CONTROL_ID_NOT_FOUND, "The dialog has no control of this number.",
     "Das Dialogfeld hat kein Steuerelement dieser Nummer."},
    {ERROR_INVALID_THREAD_ID, "The thread number is not valid.", "Die Threadnummer ist ungültig."},
    {ERROR_UNKNOWN_PRODUCT, "The product is not installed.", "Das Produkt ist nicht installiert."},
    {ERROR_UNKNOWN_PROPERTY, "There is no such property.", "Diese Eigenschaft gibt es nicht."},
    {ERROR_INVALID_HANDLE_STATE, "The handle is not in the right state for this.",
     "Das Handle ist dafür nicht im richtigen Zustand."},
    {ERROR_BAD_QUERY_SYNTAX, "The query cannot be understood.", "Die Abfrage ist nicht verständlich."},
    {ERROR_FUNCTION_FAILED, "The function failed.", "Die Funktion ist fehlgeschlagen."},
    {ERROR_UNRECOGNIZED_MEDIA, "The medium is unknown; it may not be formatted.",
     "Der Datenträger ist unbekannt; er ist vielleicht nicht formatiert."},
    {ERROR_RESOURCE_DATA_NOT_FOUND, "The module has no resources.", "Das Modul hat keine Ressourcen."},
    {ERROR_RESOURCE_TYPE_NOT_FOUND, "The module has no resources of this type.",
     "Das Modul hat keine Ressourcen dieses Typs."},
    {ERROR_RESOURCE_NAME_NOT_FOUND, "The module has no resource of this name.",
     "Das Modul hat keine Ressource dieses Namens."},
    {ERROR_RESOURCE_LANG_NOT_FOUND, "The resource does not exist in this language.",
     "Die Ressource gibt es in dieser Sprache nicht."},

    {ERROR_CANT_RESOLVE_FILENAME, "The system cannot follow the name to a file.",
     "Das System kann den Namen nicht bis zu einer Datei verfolgen."},
};

constexpr DWORD primaryMask = 0x3FF;
constexpr DWORD german = 0x07;
constexpr DWORD english = 0x09;

}  // namespace

DWORD systemMessage(const SystemSettings& settings, DWORD code, DWORD language, std::string& text) {
    const auto* const found =
        std::find_if(std::begin(messages), std::end(messages),
                     [&](const SystemMessage& message) { return message.code == code; });
    if (found == std::end(messages)) {
        return ERROR_MR_MID_NOT_FOUND;
    }
    DWORD primary = language & primaryMask;
    if (primary == LANG_NEUTRAL) {
        primary = (settings.language & primaryMask) == german ? german : english;
    }
    if (primary != german && primary != english) {
        return ERROR_RESOURCE_LANG_NOT_FOUND;
    }
    bool valid = true;
    Narrowing how;
    const std::u16string wide = widen(CP_UTF8, primary == german ? found->german : found->english, valid);
    text = narrow(settings.ansiCodePage, wide, how) + "\r\n";
    return NO_ERROR;
}

}  // namespace winlayer
