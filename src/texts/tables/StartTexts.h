// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The first minutes: tutorial, start page, the line of a machine without sound.

#include "texts/tables/KeyedText.h"

namespace quib {

inline constexpr KeyedText kStartTexts[] = {
    // The tutorial
    {"Hear", "Écouter"},
    {"Melody", "Mélodie"},
    {"Automate", "Automatiser"},
    {"Skip this step", "Passer cette étape"},
    {"That is all. The manual tells the rest; F1 lists every key.",
     "C'est tout. Le manuel dit le reste ; F1 donne toutes les touches."},
    {"Choose a lesson on the left. Each tells what to do in the main window, rings the control that is meant, and goes "
     "on by itself when it is done.",
     "Choisissez une leçon à gauche. Chacune dit quoi faire dans la fenêtre principale, encadre la commande concernée "
     "et continue d'elle-même quand c'est fait."},
    {"Your project is put aside and comes back when this window closes.",
     "Votre projet est mis de côté et revient à la fermeture de cette fenêtre."},
    {"Press the arrow on one of the pictures: an example plays.",
     "Pressez la flèche d'une des images : un exemple joue."},
    {"Press Space: it stops. Space plays and stops everywhere in the program.",
     "Pressez Espace : il s'arrête. Espace lance et arrête partout dans le programme."},
    {"Press \"New beat\": a drum machine comes with two bars that play at once.",
     "Pressez « Nouveau rythme » : une boîte à rythmes arrive, deux mesures jouent aussitôt."},
    {"Click two empty boxes of the row of steps: each becomes a hit. Another click takes it away.",
     "Cliquez deux cases vides de la rangée de pas : chacune devient un coup. Un autre clic l'enlève."},
    {"Press Ctrl+I, write \"synth\" and press Enter: a second instrument, with its keyboard. The keys from A on play "
     "it.",
     "Pressez Ctrl+I, écrivez « synth », pressez Entrée : un deuxième instrument, avec son clavier. Les touches de la "
     "rangée du A américain le jouent."},
    {"Click four boxes of its row of steps: a melody, which F2 lets you move in the piano roll.",
     "Cliquez quatre cases de sa rangée de pas : une mélodie, que F2 permet de déplacer dans le piano roll."},
    {"Press Space, if nothing plays yet: both play as a loop.",
     "Pressez Espace si rien ne joue encore : les deux jouent en boucle."},
    {"Press SONG: now the song plays, which is still empty.",
     "Pressez MORCEAU : c'est le morceau qui joue, encore vide."},
    {"Let it play with Space and press \"Put the selected patterns into the song\". F6 shows the song below the "
     "strips.",
     "Lancez-le avec Espace et pressez « Mettre les motifs choisis dans le morceau ». F6 montre le morceau sous les "
     "tranches."},
    {"Press A: what you move is recorded from now on.", "Pressez A : ce que vous bougez est désormais enregistré."},
    {"While it plays, move the level of an instrument. F3 shows what was recorded.",
     "Pendant la lecture, bougez le niveau d'un instrument. F3 montre ce qui a été enregistré."},
    {"Press Ctrl+E: the window that writes sound files opens.",
     "Pressez Ctrl+E : la fenêtre qui écrit les fichiers audio s'ouvre."},
    {"Press its button \"Export\": the song becomes a file that every player plays.",
     "Pressez son bouton « Exporter » : le morceau devient un fichier que tout lecteur lit."},

    // The start page, and the line of a machine without sound
    {"Listen to an example", "Écouter un exemple"},
    {"A click opens it, the arrow plays it at once.", "Un clic ouvre, la flèche joue aussitôt."},
    {"Begin", "Commencer"},
    {"Go on", "Continuer"},
    {"Learn", "Apprendre"},
    {"New beat", "Nouveau rythme"},
    {"New synth", "Nouveau synthé"},
    {"Drums with a beat that plays at once", "Une batterie et un rythme prêt à jouer"},
    {"A synth, its keyboard open", "Un synthé, son clavier ouvert"},
    {"Open a file ...", "Ouvrir un fichier ..."},
    {"Six lessons, about five minutes", "Six leçons, environ cinq minutes"},
    {"Manual", "Manuel"},
    {"All keys", "Toutes les touches"},
    {"Show this page at every start", "Afficher cette page au démarrage"},
    {"today %1", "aujourd'hui %1"},
    {"yesterday", "hier"},
    {"Deep house in C minor", "Deep house en do mineur"},
    {"Disco house with loops that follow the tempo", "Disco house, des boucles qui suivent le tempo"},
    {"Techno with two acid lines on the crossfader", "Techno, deux lignes acides au crossfader"},
    {"Swung electric piano, strings, brushes", "Piano électrique swing, cordes, balais"},
    {"Broken beats, two basses thrown bar by bar", "Rythmes cassés, deux basses en alternance"},
    {"\"%1\" could not be loaded.", "\"%1\" n'a pas pu être chargé."},
    {"No sound device answers.", "Aucune sortie audio."},
    {"Play waits until one is chosen; work and rendering to a file go on.",
     "La lecture attend un choix ; travail et rendu restent possibles."},
    {"Choose device ...", "Choisir la sortie ..."},
    {"Try JACK", "Essayer JACK"},
    {"Play silently", "Jouer sans son"},
    {"Nothing plays: no sound device answers. Choose one under Settings > Audio & Midi, or play silently.",
     "Rien ne joue : aucune sortie audio ne répond. Choisissez-en une sous Réglages > Audio & Midi, ou jouez sans "
     "son."},
    {"Looking for plug-ins", "Recherche des plug-ins"},
    {"Plug-in folders", "Dossiers des plug-ins"},
    {"Folders that are searched beside those of the program and the system:",
     "Dossiers parcourus en plus de ceux du programme et du système :"},
    {"Add ...", "Ajouter ..."},
    {"Remove", "Retirer"},
    {"Cancel", "Annuler"},
    {"Yes", "Oui"},
    {"No", "Non"},
    {"Do not save", "Ne pas enregistrer"},
    {"Loading %1", "Chargement de %1"},
};

}  // namespace quib
