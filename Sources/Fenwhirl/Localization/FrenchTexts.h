// Every text of the interface, in French, the source language. The French text itself is the key of the
// translation tables: they hold one row for each text of this list, in this order.
//
// The texts address the user with "tu". "%@" stands for a value that is put in after the translation. They
// are compared to the letter, so straight apostrophes and ordinary spaces stand here as they stand at the
// place that shows the text.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

// clang-format off
inline constexpr auto frenchTexts = std::to_array<std::u16string_view>({
    // Apps page
    u"Applications",
    u"Ce qui fait chauffer ton Mac en ce moment",
    u"%@ utilise %@ du processeur.",
    u"Aucune application ne sollicite beaucoup le processeur.",
    u"Désactive un interrupteur pour fermer l'application. Les documents non enregistrés peuvent être perdus : Fenwhirl demande toujours une confirmation.",
    u"Fermer %@ ?",
    u"Fermer",
    u"Forcer la fermeture",
    u"Annuler",
    u"Les documents non enregistrés dans cette application peuvent être perdus.",
    u"Mo",
    u"Protégé",
    // Fan cards, modes and enabling fan control
    u"%@ – %@ tr/min",
    u"tr/min",
    u"Mode",
    u"Vitesse demandée : %@ tr/min",
    u"Capteur",
    u"Température principale (processeur)",
    u"La vitesse augmente à partir de %@ °C",
    u"Vitesse maximale à %@ °C",
    u"Activer le contrôle des ventilateurs",
    u"Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois.",
    u"Activation…",
    u"Activer",
    u"Préréglage",
    u"Personnalisé",
    // Dashboard, navigation and menu bar
    u"Tableau de bord",
    u"Ce Mac",
    u"Fenwhirl n'arrive pas à lire les capteurs de ce Mac.",
    u"Ce Mac n'a pas de ventilateur à piloter : il se refroidit sans bruit. Les températures restent visibles ci-dessous.",
    u"Température du processeur",
    u"il y a 10 min",
    u"maintenant",
    u"Capteurs",
    u"Ventilateurs",
    u"Préréglages",
    u"Alertes",
    u"Réglages",
    u"Ouvrir Fenwhirl",
    u"Quitter",
    // Mode and preset names, preset descriptions
    u"Auto",
    u"Vitesse fixe",
    u"Selon un capteur",
    u"Silencieux",
    u"Équilibré",
    u"Jeu",
    u"Max",
    u"Laisse macOS gérer les ventilateurs, comme d'origine.",
    u"Ventilateurs discrets : ils accélèrent seulement quand le Mac chauffe vraiment.",
    u"Bon compromis entre bruit et fraîcheur pour l'usage de tous les jours.",
    u"Refroidit tôt pour les jeux et les gros calculs.",
    u"Ventilateurs à fond en permanence. Bruyant, mais le Mac reste le plus frais possible.",
    // Theme names
    u"Sombre",
    u"Clair",
    u"Automatique",
    // Health summary
    u"Tout est normal",
    u"Le Mac est chaud",
    u"Surchauffe",
    u"Mac en bonne santé",
    u"Les ventilateurs travaillent",
    u"Ferme des applications",
    // Errors and notifications
    u"Ce Mac n'a pas accepté le changement de vitesse du ventilateur.",
    u"Ton Mac chauffe : %@ degrés.",
    u"Ceci est une alerte de test.",
    u"L'activation a été annulée ou a échoué.",
    u"La désactivation a échoué.",
    u"Impossible de changer le démarrage automatique.",
    // Fan names
    u"Ventilateur",
    u"Ventilateur gauche",
    u"Ventilateur droit",
    u"Ventilateur %@",
    // Onboarding
    u"Langue",
    u"Activer le contrôle",
    u"Contrôle activé",
    u"Suivant",
    u"Commencer",
    u"Bienvenue dans Fenwhirl",
    u"Pilote tes ventilateurs",
    u"Tout est prêt",
    u"Fenwhirl surveille la température de ton Mac et règle la vitesse des ventilateurs pour qu'il reste frais et silencieux.",
    u"Pour changer la vitesse des ventilateurs, macOS demande ton mot de passe une seule fois. Tu peux passer cette étape : Fenwhirl affichera alors seulement les températures.",
    u"Choisis un préréglage en un clic depuis la barre de menu, ou règle chaque ventilateur depuis la fenêtre principale.",
    u"Choisis la vitesse de chaque ventilateur",
    u"Aucun ventilateur détecté sur ce Mac.",
    u"%@ capteurs de température",
    u"Un clic pour changer le comportement des ventilateurs",
    // Presets page
    u"Actif",
    u"Appliquer",
    // Alerts page
    u"Sois prévenu avant que ton Mac ne souffre",
    u"Prévenir quand le Mac chauffe trop",
    u"Seuil d'alerte : %@ °C",
    u"Une notification et un son se déclenchent au maximum une fois toutes les 5 minutes.",
    u"Tester l'alerte",
    // Settings page
    u"Démarrage",
    u"Ouvrir Fenwhirl au démarrage du Mac",
    u"Apparence",
    u"Thème",
    u"« Automatique » suit la langue de ton Mac.",
    u"Contrôle des ventilateurs",
    u"Activé : Fenwhirl peut changer la vitesse des ventilateurs.",
    u"Non activé : Fenwhirl peut seulement lire les températures.",
    u"Réinstaller",
    u"Désactiver",
    u"Remettre les ventilateurs en automatique",
    // Sensor names
    u"Processeur (proximité)",
    u"Processeur (diode)",
    u"Processeur (E)",
    u"Processeur (F)",
    u"Processeur (radiateur)",
    u"Processeur (PECI)",
    u"Graphisme (PECI)",
    u"Système (PECI)",
    u"Graphisme",
    u"Graphisme (diode)",
    u"Graphisme (radiateur)",
    u"Mémoire",
    u"Mémoire (module)",
    u"Radiateur",
    u"Disque SSD",
    u"Disque SSD 2",
    u"Repose-mains",
    u"Repose-mains 2",
    u"Surface",
    u"Air (gauche)",
    u"Air (droite)",
    u"Air ambiant",
    u"Batterie",
    u"Batterie 2",
    u"Batterie 3",
    u"Wi-Fi",
    u"Alimentation",
    u"Contrôleur de plateforme",
    u"Écran",
    u"Chipset",
    u"Chipset (diode)",
    u"Cœur CPU",
    u"Cœur performance",
    u"Cœur efficacité",
    // Health thresholds
    u"État du Mac",
    u"Mac chaud à partir de %@ °C",
    u"Surchauffe à partir de %@ °C",
    u"Choisis à partir de quelle température Fenwhirl affiche que le Mac est chaud. La protection automatique à 92 °C ne change pas.",
    // Safety, diagnostic report and helper update
    u"Aucune température lisible sur ce Mac : le contrôle est suspendu par sécurité.",
    u"Rapport de diagnostic",
    u"Crée un petit fichier texte avec le modèle de ce Mac et ses capteurs. Utile pour vérifier que Fenwhirl fonctionne sur ton Mac ou pour demander de l'aide.",
    u"Inclure un test des ventilateurs (6 secondes)",
    u"Création en cours…",
    u"Créer le rapport",
    u"Une mise à jour de l'assistant est disponible.",
    u"Mettre à jour",
});

// clang-format on

// Whether there is a row for this text.
[[nodiscard]] constexpr bool isFrenchText(std::u16string_view text) {
    return std::find(frenchTexts.begin(), frenchTexts.end(), text) != frenchTexts.end();
}

// How often `part` occurs in `text`.
[[nodiscard]] constexpr std::size_t occurrences(std::u16string_view text, std::u16string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::u16string_view::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}
