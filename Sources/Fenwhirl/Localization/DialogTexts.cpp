#include "Fenwhirl/Localization/DialogTexts.h"

#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/Localizer.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Fenwhirl {

namespace {

struct Row {
    std::u16string_view english;
    std::u16string_view pt;
    std::u16string_view sr; // Latin script
};

constexpr std::array rows = {
    // Buttons
    Row{u"OK", u"OK", u"U redu"},
    Row{u"Save", u"Guardar", u"Sačuvaj"},
    Row{u"&Save", u"&Guardar", u"&Sačuvaj"},
    Row{u"Open", u"Abrir", u"Otvori"},
    Row{u"&Open", u"&Abrir", u"&Otvori"},
    Row{u"Cancel", u"Cancelar", u"Otkaži"},
    Row{u"&Yes", u"&Sim", u"&Da"},
    Row{u"&No", u"&Não", u"&Ne"},
    // Titles and labels
    Row{u"Save As", u"Guardar como", u"Sačuvaj kao"},
    Row{u"Look in:", u"Procurar em:", u"Mesto:"},
    Row{u"File &name:", u"&Nome do ficheiro:", u"&Ime datoteke:"},
    Row{u"Files of type:", u"Tipo de ficheiros:", u"Vrsta datoteka:"},
    Row{u"All Files (*)", u"Todos os ficheiros (*)", u"Sve datoteke (*)"},
    Row{u"Sidebar", u"Barra lateral", u"Bočna traka"},
    Row{u"List of places and bookmarks", u"Lista de locais e favoritos", u"Lista mesta i obeleživača"},
    Row{u"Files", u"Ficheiros", u"Datoteke"},
    // Tools
    Row{u"Back", u"Anterior", u"Nazad"},
    Row{u"Go back", u"Recuar", u"Idi nazad"},
    Row{u"Forward", u"Seguinte", u"Napred"},
    Row{u"Go forward", u"Avançar", u"Idi napred"},
    Row{u"Parent Directory", u"Pasta superior", u"Nadređeni folder"},
    Row{u"Go to the parent directory", u"Ir para a pasta superior", u"Idi u nadređeni folder"},
    Row{u"Create New Folder", u"Criar nova pasta", u"Napravi novi folder"},
    Row{u"Create a New Folder", u"Criar uma nova pasta", u"Napravi novi folder"},
    Row{u"&New Folder", u"&Nova pasta", u"&Novi folder"},
    Row{u"List View", u"Vista em lista", u"Prikaz liste"},
    Row{u"Change to list view mode", u"Mudar para a vista em lista", u"Pređi na prikaz liste"},
    Row{u"Detail View", u"Vista em detalhe", u"Prikaz detalja"},
    Row{u"Change to detail view mode", u"Mudar para a vista em detalhe", u"Pređi na prikaz detalja"},
    Row{u"&Rename", u"&Mudar o nome", u"&Preimenuj"},
    Row{u"&Delete", u"&Apagar", u"&Obriši"},
    Row{u"Show ", u"Mostrar ", u"Prikaži "},
    Row{u"Show &hidden files", u"Mostrar ficheiros &ocultos", u"Prikaži &skrivene datoteke"},
    // Columns
    Row{u"Name", u"Nome", u"Ime"},
    Row{u"Size", u"Tamanho", u"Veličina"},
    Row{u"Type", u"Tipo", u"Vrsta"},
    Row{u"Date Modified", u"Modificação", u"Datum izmene"},
    Row{u"Computer", u"Computador", u"Računar"},
    Row{u"Drive", u"Unidade", u"Disk"},
    Row{u"Folder", u"Pasta", u"Folder"},
    Row{u"Unknown", u"Desconhecido", u"Nepoznato"},
    // Questions
    Row{u"%1 already exists.\nDo you want to replace it?", u"%1 já existe.\nQueres substituí-lo?",
        u"%1 već postoji.\nŽeliš li da ga zameniš?"},
    Row{u"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
        u"%1\nA pasta não foi encontrada.\nVerifica se o nome está correto.",
        u"%1\nFolder nije pronađen.\nProveri da li je ime ispravno."},
    Row{u"Are you sure you want to delete '%1'?", u"Queres mesmo apagar “%1”?",
        u"Zaista želiš da obrišeš „%1“?"},
};

} // namespace

QStringList DialogTexts::all() {
    QStringList english;
    for (const Row& row : rows) {
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
    const auto* const row = std::find_if(
        rows.begin(), rows.end(), [&](const Row& each) { return QStringView(each.english) == english; });
    if (row == rows.end()) {
        return std::nullopt;
    }
    const QString words = QStringView(serbian ? row->sr : row->pt).toString();
    return language == AppLanguage::srCyrl ? Cyrillic::convert(words) : words;
}

} // namespace Fenwhirl
