#include "Fenwhirl/Localization/DialogTexts.h"

#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/Localizer.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Fenwhirl {

namespace {

struct DialogRow {
    std::u16string_view english;
    std::u16string_view pt;
    std::u16string_view sr; // Latin script
};

constexpr std::array dialogTexts = {
    // Buttons
    DialogRow{u"OK", u"OK", u"U redu"},
    DialogRow{u"Save", u"Guardar", u"Sačuvaj"},
    DialogRow{u"&Save", u"&Guardar", u"&Sačuvaj"},
    DialogRow{u"Open", u"Abrir", u"Otvori"},
    DialogRow{u"&Open", u"&Abrir", u"&Otvori"},
    DialogRow{u"Cancel", u"Cancelar", u"Otkaži"},
    DialogRow{u"&Yes", u"&Sim", u"&Da"},
    DialogRow{u"&No", u"&Não", u"&Ne"},
    // Titles and labels
    DialogRow{u"Save As", u"Guardar como", u"Sačuvaj kao"},
    DialogRow{u"Look in:", u"Procurar em:", u"Mesto:"},
    DialogRow{u"File &name:", u"&Nome do ficheiro:", u"&Ime datoteke:"},
    DialogRow{u"Files of type:", u"Tipo de ficheiros:", u"Vrsta datoteka:"},
    DialogRow{u"All Files (*)", u"Todos os ficheiros (*)", u"Sve datoteke (*)"},
    DialogRow{u"Sidebar", u"Barra lateral", u"Bočna traka"},
    DialogRow{u"List of places and bookmarks", u"Lista de locais e favoritos", u"Lista mesta i obeleživača"},
    DialogRow{u"Files", u"Ficheiros", u"Datoteke"},
    // Tools
    DialogRow{u"Back", u"Anterior", u"Nazad"},
    DialogRow{u"Go back", u"Recuar", u"Idi nazad"},
    DialogRow{u"Forward", u"Seguinte", u"Napred"},
    DialogRow{u"Go forward", u"Avançar", u"Idi napred"},
    DialogRow{u"Parent Directory", u"Pasta superior", u"Nadređeni folder"},
    DialogRow{u"Go to the parent directory", u"Ir para a pasta superior", u"Idi u nadređeni folder"},
    DialogRow{u"Create New Folder", u"Criar nova pasta", u"Napravi novi folder"},
    DialogRow{u"Create a New Folder", u"Criar uma nova pasta", u"Napravi novi folder"},
    DialogRow{u"&New Folder", u"&Nova pasta", u"&Novi folder"},
    DialogRow{u"List View", u"Vista em lista", u"Prikaz liste"},
    DialogRow{u"Change to list view mode", u"Mudar para a vista em lista", u"Pređi na prikaz liste"},
    DialogRow{u"Detail View", u"Vista em detalhe", u"Prikaz detalja"},
    DialogRow{u"Change to detail view mode", u"Mudar para a vista em detalhe", u"Pređi na prikaz detalja"},
    DialogRow{u"&Rename", u"&Mudar o nome", u"&Preimenuj"},
    DialogRow{u"&Delete", u"&Apagar", u"&Obriši"},
    DialogRow{u"Show ", u"Mostrar ", u"Prikaži "},
    DialogRow{u"Show &hidden files", u"Mostrar ficheiros &ocultos", u"Prikaži &skrivene datoteke"},
    // Columns
    DialogRow{u"Name", u"Nome", u"Ime"},
    DialogRow{u"Size", u"Tamanho", u"Veličina"},
    DialogRow{u"Type", u"Tipo", u"Vrsta"},
    DialogRow{u"Date Modified", u"Modificação", u"Datum izmene"},
    DialogRow{u"Computer", u"Computador", u"Računar"},
    DialogRow{u"Drive", u"Unidade", u"Disk"},
    DialogRow{u"Folder", u"Pasta", u"Folder"},
    DialogRow{u"Unknown", u"Desconhecido", u"Nepoznato"},
    // Questions
    DialogRow{u"%1 already exists.\nDo you want to replace it?", u"%1 já existe.\nQueres substituí-lo?",
              u"%1 već postoji.\nŽeliš li da ga zameniš?"},
    DialogRow{u"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
              u"%1\nA pasta não foi encontrada.\nVerifica se o nome está correto.",
              u"%1\nFolder nije pronađen.\nProveri da li je ime ispravno."},
    DialogRow{u"Are you sure you want to delete '%1'?", u"Queres mesmo apagar “%1”?",
              u"Zaista želiš da obrišeš „%1“?"},
};

} // namespace

QStringList DialogTexts::all() {
    QStringList english;
    for (const DialogRow& row : dialogTexts) {
        english.append(QStringView(row.english).toString());
    }
    return english;
}

std::optional<QString> DialogTexts::lookup(QStringView english) {
    const AppLanguage language = Localizer::resolved();
    const bool serbian = language == AppLanguage::srLatn || language == AppLanguage::srCyrl;
    if (!serbian && language != AppLanguage::pt) {
        return std::nullopt;
    }
    const auto* const row = std::find_if(dialogTexts.begin(), dialogTexts.end(), [&](const DialogRow& each) {
        return QStringView(each.english) == english;
    });
    if (row == dialogTexts.end()) {
        return std::nullopt;
    }
    const QString words = QStringView(serbian ? row->sr : row->pt).toString();
    return language == AppLanguage::srCyrl ? Cyrillic::convert(words) : words;
}

} // namespace Fenwhirl
