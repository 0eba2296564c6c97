#include "Fenwhirl/Localization/SystemTerms.h"

#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/Localizer.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Fenwhirl {

namespace {

struct TermRow {
    std::u16string_view asked;
    std::u16string_view en;
    std::u16string_view fr;
    std::u16string_view sr; // Latin script
    std::u16string_view de;
    std::u16string_view es;
    std::u16string_view it;
    std::u16string_view pt;
    std::u16string_view ru;
};

// clang-format off
constexpr std::array terms = {
    // The program's own menu; Qt asks for it, too
    TermRow{u"About %1", u"About %1", u"À propos de %1", u"O aplikaciji %1", u"Über %1",
        u"Acerca de %1", u"Informazioni su %1", u"Acerca do %1", u"О приложении %1"},
    TermRow{u"Preferences…", u"Settings…", u"Réglages…", u"Podešavanja…", u"Einstellungen …",
        u"Ajustes…", u"Impostazioni…", u"Definições…", u"Настройки…"},
    TermRow{u"Services", u"Services", u"Services", u"Usluge", u"Dienste",
        u"Servicios", u"Servizi", u"Serviços", u"Службы"},
    TermRow{u"Hide %1", u"Hide %1", u"Masquer %1", u"Sakrij %1", u"%1 ausblenden",
        u"Ocultar %1", u"Nascondi %1", u"Ocultar o %1", u"Скрыть %1"},
    TermRow{u"Hide Others", u"Hide Others", u"Masquer les autres", u"Sakrij ostale", u"Andere ausblenden",
        u"Ocultar otros", u"Nascondi altre", u"Ocultar outras", u"Скрыть остальные"},
    TermRow{u"Show All", u"Show All", u"Tout afficher", u"Prikaži sve", u"Alle einblenden",
        u"Mostrar todo", u"Mostra tutte", u"Mostrar tudo", u"Показать все"},
    TermRow{u"Quit %1", u"Quit %1", u"Quitter %1", u"Zatvori %1", u"%1 beenden",
        u"Salir de %1", u"Esci da %1", u"Sair do %1", u"Завершить %1"},
    TermRow{u"Settings…", u"Settings…", u"Réglages…", u"Podešavanja…", u"Einstellungen …",
        u"Ajustes…", u"Impostazioni…", u"Definições…", u"Настройки…"},
    // Edit
    TermRow{u"Edit", u"Edit", u"Édition", u"Uređivanje", u"Bearbeiten",
        u"Edición", u"Modifica", u"Edição", u"Правка"},
    TermRow{u"Cut", u"Cut", u"Couper", u"Iseci", u"Ausschneiden",
        u"Cortar", u"Taglia", u"Cortar", u"Вырезать"},
    TermRow{u"Copy", u"Copy", u"Copier", u"Kopiraj", u"Kopieren",
        u"Copiar", u"Copia", u"Copiar", u"Скопировать"},
    TermRow{u"Paste", u"Paste", u"Coller", u"Nalepi", u"Einsetzen",
        u"Pegar", u"Incolla", u"Colar", u"Вставить"},
    TermRow{u"Select All", u"Select All", u"Tout sélectionner", u"Izaberi sve", u"Alles auswählen",
        u"Seleccionar todo", u"Seleziona tutto", u"Selecionar tudo", u"Выбрать все"},
    // View; its items are the pages
    TermRow{u"View", u"View", u"Présentation", u"Prikaz", u"Darstellung",
        u"Visualización", u"Vista", u"Visualização", u"Вид"},
    // Window
    TermRow{u"Window", u"Window", u"Fenêtre", u"Prozor", u"Fenster",
        u"Ventana", u"Finestra", u"Janela", u"Окно"},
    TermRow{u"Minimize", u"Minimize", u"Placer dans le Dock", u"Umanji", u"Im Dock ablegen",
        u"Minimizar", u"Contrai", u"Minimizar", u"Свернуть"},
    TermRow{u"Zoom", u"Zoom", u"Réduire/agrandir", u"Zumiraj", u"Zoomen",
        u"Zoom", u"Ridimensiona", u"Zoom", u"Изменить масштаб"},
    TermRow{u"Close", u"Close", u"Fermer", u"Zatvori", u"Schließen",
        u"Cerrar", u"Chiudi", u"Fechar", u"Закрыть"},
    TermRow{u"Bring All to Front", u"Bring All to Front", u"Tout ramener au premier plan", u"Postavi sve u prvi plan",
        u"Alle nach vorne bringen", u"Traer todo al frente", u"Porta tutto in primo piano",
        u"Passar tudo para a frente", u"Все окна — на передний план"},
    // Help
    TermRow{u"Help", u"Help", u"Aide", u"Pomoć", u"Hilfe", u"Ayuda", u"Aiuto", u"Ajuda", u"Справка"},
};

// clang-format on

std::u16string_view wordsOf(const TermRow& row, AppLanguage language) {
    switch (language) {
    case AppLanguage::fr:
        return row.fr;
    case AppLanguage::srLatn:
    case AppLanguage::srCyrl:
        return row.sr;
    case AppLanguage::de:
        return row.de;
    case AppLanguage::es:
        return row.es;
    case AppLanguage::it:
        return row.it;
    case AppLanguage::pt:
        return row.pt;
    case AppLanguage::ru:
        return row.ru;
    case AppLanguage::automatic:
    case AppLanguage::en:
        return row.en;
    }
    Q_UNREACHABLE();
}

} // namespace

QStringList SystemTerms::all() {
    QStringList asked;
    for (const TermRow& row : terms) {
        asked.append(QStringView(row.asked).toString());
    }
    return asked;
}

std::optional<QString> SystemTerms::lookup(QStringView english) {
    const auto* const row = std::find_if(
        terms.begin(), terms.end(), [&](const TermRow& each) { return QStringView(each.asked) == english; });
    if (row == terms.end()) {
        return std::nullopt;
    }
    const AppLanguage language = Localizer::resolved();
    const QString words = QStringView(wordsOf(*row, language)).toString();
    return language == AppLanguage::srCyrl ? Cyrillic::convert(words) : words;
}

QString SystemTerms::text(QStringView english, const QString& program) {
    return lookup(english).value_or(english.toString()).replace(QStringLiteral("%1"), program);
}

} // namespace Fenwhirl
