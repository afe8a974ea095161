// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The help that a control shows under the mouse, by its number, in English and French. "NAME - what it is":
// what stands before the dash is shown as a title. Only Latin-1 letters come through (see Texts.h).

namespace quib {

struct NumberedText {
    int number;
    const char* english;
    const char* french;
};

inline constexpr NumberedText kInfoTexts[] = {
    {127,
     "PATTERN - To copy a pattern to another pattern, click the right mouse button on the pattern you want to copy, "
     "and while holding the button down, move the mouse to the destination pattern, then release the button.",
     "MOTIF - Pour copier un motif sur un autre, cliquez avec le bouton droit de la souris sur le motif à copier et, "
     "sans relâcher le bouton, amenez la souris sur le motif de destination, puis relâchez le bouton."},
    {390, "You can select an effect by clicking the right mouse button on this place.",
     "Vous pouvez choisir un effet en cliquant ici avec le bouton droit de la souris."},
    {400,
     "NOTES - Click to add a note and drag it longer or to another key; press a note to hear and move it, drag its "
     "end for its length. Double click deletes. The right button draws a selection, or opens a menu.",
     "NOTES - Cliquez pour ajouter une note et tirez-la plus longue ou vers une autre touche ; pressez une note pour "
     "l'entendre et la déplacer, tirez sa fin pour sa durée. Double clic efface. Le bouton droit sélectionne ou ouvre "
     "un menu."},
    {401, "VELOCITY - How loud each note is. Drag a bar, or across the bars to paint; a selection moves together.",
     "VÉLOCITÉ - La force de chaque note. Tirez une barre, ou glissez sur les barres pour peindre ; une sélection "
     "bouge "
     "ensemble."},
    {402, "KEYBOARD VIEW - Shows a row for each key.", "VUE CLAVIER - Montre une ligne par touche."},
    {403, "DRUM VIEW - Shows a row for each sound, with its name where the plug-in tells it.",
     "VUE BATTERIE - Montre une ligne par son, avec son nom si le plug-in le donne."},
    {404, "PATTERN - The pattern that is shown and selected.", "MOTIF - Le motif montré et sélectionné."},
    {405, "SNAP - The grid that the mouse keeps to. Hold Alt while dragging to be free of it.",
     "GRILLE - La grille que suit la souris. Tenez Alt en tirant pour vous en libérer."},
    {406, "SCALE - Rows outside of the scale are darker.", "GAMME - Les lignes hors de la gamme sont plus sombres."},
    {407, "FOLD - Hides the rows outside of the scale, or those without notes; rows with notes are always shown.",
     "PLIER - Cache les lignes hors de la gamme, ou celles sans notes ; les lignes qui ont des notes restent "
     "visibles."},
    {408, "QUANTISE - Moves the selected notes, or all, towards the grid by the strength beside it.",
     "QUANTIFIER - Rapproche de la grille les notes choisies, ou toutes, selon la force indiquée."},
    {409, "GHOSTS - Notes of other patterns and instruments behind those that you edit.",
     "FANTÔMES - Les notes d'autres motifs et instruments derrière celles que vous éditez."},
    {410, "ARPEGGIATOR - When it is on, the keys you hold are played one after the other instead of together.",
     "ARPÉGIATEUR - Lorsqu'il est en marche, les touches tenues sont jouées l'une après l'autre au lieu de l'être "
     "ensemble."},
    {411, "ORDER - The order in which the held keys are played: upwards, downwards, up and down, or at random.",
     "ORDRE - L'ordre dans lequel les touches tenues sont jouées : en montant, en descendant, en montant puis en "
     "descendant, ou au hasard."},
    {412, "HOLES - Adds silent places to the random order, so that some steps stay empty.",
     "TROUS - Ajoute des places muettes à l'ordre aléatoire : certains pas restent vides."},
    {413, "EXTEND - How often the keys are repeated, each time further up by the interval.",
     "EXTENSION - Le nombre de répétitions des touches, chacune plus haute que la précédente de la valeur de "
     "l'intervalle."},
    {414,
     "EXTEND MODE - When the repetitions come: for each key at once, after a whole pass through the keys, after a pass "
     "with the repeated part moving through the keys, or at random.",
     "MODE D'EXTENSION - Le moment des répétitions : aussitôt pour chaque touche, après un passage complet par toutes "
     "les touches, après un passage, la partie répétée se déplaçant de touche en touche, ou au hasard."},
    {415, "INTERVAL - By how many semitones each repetition lies above the one before.",
     "INTERVALLE - De combien de demi-tons chaque répétition est plus haute que la précédente."},
    {416, "VELOCITY - How much softer, at random, a note may be than the loudest one.",
     "VÉLOCITÉ - De combien une note peut être, au hasard, moins forte que la plus forte."},
    {417, "GATE - How long each note sounds: a whole step, or a half, a quarter, an eighth, a sixteenth of one.",
     "DURÉE - La durée de chaque note : un pas entier, ou la moitié, le quart, le huitième, le seizième d'un pas."},
    {418, "TEMPO - How often a note is played: with every step, or every 2, 4, 8 or 16 steps.",
     "TEMPO - La fréquence des notes : une à chaque pas, ou tous les 2, 4, 8 ou 16 pas."},
    {427, "ROWS - The order of the sounds: by key, by name, or those with notes first.",
     "LIGNES - L'ordre des sons : par touche, par nom, ou ceux qui ont des notes d'abord."},
    {420, "AUDITION - Notes are heard when you add, press or move them.",
     "ÉCOUTE - Les notes s'entendent quand vous les ajoutez, pressez ou déplacez."},
    {421, "FOLLOW - Turns the page with the music.", "SUIVRE - Tourne la page avec la musique."},
    {422, "ZOOM - Shows more or less time.", "ZOOM - Montre plus ou moins de temps."},
    {534, "MORE - The tools that the window has no room for.",
     "PLUS - Les outils qui ne tiennent pas dans la fenêtre."},
    {533, "ZOOM - Higher or lower rows.", "ZOOM - Des rangées plus ou moins hautes."},
    {423, "MIDI INPUT - The channel that the instrument listens to.",
     "ENTRÉE MIDI - Le canal que l'instrument écoute."},
    {424,
     "KEY LIMITS - The keys that the instrument plays live. Choose the line, then click a key; or drag the triangle "
     "beside the keys.",
     "LIMITES - Les touches que l'instrument joue en direct. Choisissez la ligne puis cliquez une touche ; ou tirez le "
     "triangle à côté des touches."},
    {425, "KEY TRANSPOSE - Semitones by which keys played live are shifted.",
     "TRANSPOSITION - Demi-tons dont les touches jouées en direct sont décalées."},
    {426, "MIDI FILTER - Which messages besides notes the instrument takes.",
     "FILTRE MIDI - Les messages que l'instrument accepte en plus des notes."},
    {700, "RECORD SNAP - Where keys that are played go while notes are recorded: to the nearest line of this grid.",
     "GRILLE D'ENREGISTREMENT - Où vont les touches jouées pendant l'enregistrement des notes : à la ligne la plus "
     "proche de cette grille."},
    {510,
     "METRONOME - A click on every beat while playing, higher on the first of the bar. You hear it; recordings and "
     "rendered files never do. Right button: level, count-in.",
     "MÉTRONOME - Un clic à chaque temps de la lecture, plus aigu au premier de la mesure. Vous l'entendez, les "
     "enregistrements et les rendus jamais. Bouton droit : niveau, décompte."},
    {428,
     "RECORD NOTES (Ctrl+R) - Plays at once, until you stop; what you play meanwhile is written into the current "
     "pattern of the current "
     "instrument: on a MIDI keyboard, the keyboard of the strip, or the keys of the computer (A to L and the row "
     "above, Z and X for the octave). Right button: overdub or replace, quantise.",
     "ENREGISTREMENT DE NOTES (Ctrl+R) - Lance la lecture jusqu'à l'arrêt et écrit ce que vous jouez dans le motif "
     "courant de l'instrument courant : clavier MIDI, de la tranche ou de l'ordinateur (rangée centrale et celle du "
     "dessus ; octave : deux premières du bas). Bouton droit : ajouter ou remplacer, quantifier."},
    {429,
     "STEP ENTRY - While nothing plays, the keys you play are written at the cursor, keys held together as a chord. "
     "Then the cursor goes on by the snap, at the end back to the beginning. The arrow keys move it.",
     "SAISIE PAS À PAS - À l'arrêt, les touches jouées sont écrites au curseur, celles tenues ensemble en accord. Le "
     "curseur avance ensuite de la valeur du magnétisme, à la fin il revient au début. Les flèches le déplacent."},
    {430, "PLAY - Plays and stops. In song mode playing starts at the song position. Key: Space.",
     "LECTURE - Lance et arrête la lecture. En mode morceau, elle part de la position du morceau. Touche : Espace."},
    {431, "STOP - Stops playing and ends what keys hold. A second click goes back to the start and ends every note.",
     "STOP - Arrête la lecture et finit ce que des touches tiennent. Un second clic revient au début et finit toutes "
     "les "
     "notes."},
    {432,
     "RECORD AUTOMATION - While it is on, what you move on your MIDI keyboard during playing is written into the "
     "current pattern.",
     "ENREGISTREMENT D'AUTOMATION - Quand il est actif, ce que vous bougez sur le clavier MIDI pendant la lecture est "
     "écrit dans le motif en cours."},
    {433, "SONG MODE - On: the playlist decides which patterns play. Off: each instrument plays its selected pattern.",
     "MODE MORCEAU - Actif : la playlist décide quels motifs jouent. Inactif : chaque instrument joue son motif "
     "sélectionné."},
    {434, "LOOP - Repeats the part of the song between the loop marks of the playlist.",
     "BOUCLE - Répète la partie du morceau entre les marques de boucle de la playlist."},
    {435, "SYNCHRO - All patterns restart together with the longest one.",
     "SYNCHRO - Tous les motifs repartent ensemble avec le plus long."},
    {436,
     "TEMPO - 20 to 300 beats per minute. Double click or right button: type a value. Alt, or Ctrl+Shift, + click: "
     "120.",
     "TEMPO - De 20 à 300 battements par minute. Double clic ou bouton droit : taper une valeur. Alt, ou Ctrl+Maj, + "
     "clic : 120."},
    {437, "TAP - Click in time with the music to set the tempo.", "TAP - Cliquez en rythme pour régler le tempo."},
    {438, "POSITION - Bar, beat and step of what is playing.", "POSITION - Mesure, temps et pas de la lecture."},
    {439, "CPU - Share of the time of a block that rendering it takes. Near 100 % the sound breaks up.",
     "CPU - Part du temps d'un bloc que prend son calcul. Vers 100 %, le son se coupe."},
    // Why a control cannot be used now
    {511, "EDIT - There is no effect in this place. Choose one in the field to the left.",
     "ÉDITER - Il n'y a pas d'effet à cet endroit. Choisissez-en un dans le champ à gauche."},
    {512, "MASTER INSERT - There is no effect to switch yet. Choose one in the field to the right.",
     "INSERT MASTER - Il n'y a pas encore d'effet à activer. Choisissez-en un dans le champ à droite."},
    {513, "SEND - There is no shared effect in this place yet. A click chooses one.",
     "SEND - Il n'y a pas encore d'effet partagé à cet endroit. Un clic en choisit un."},
    {514, "INSERT - There is no effect in this place yet. A click chooses one.",
     "INSERT - Il n'y a pas encore d'effet à cet endroit. Un clic en choisit un."},
    // Automation
    {520, "PATTERN, SONG - Whether the points belong to the selected pattern or to the song.",
     "MOTIF, MORCEAU - Si les points appartiennent au motif choisi ou au morceau."},
    {521, "POINTS - Click to add a point, drag to move one or a part of the line. Double click deletes.",
     "POINTS - Cliquez pour ajouter un point, glissez un point ou une partie de la ligne. Double-clic : efface."},
    {522, "PENCIL - Draws freely. With the tool for points hold Ctrl.",
     "CRAYON - Dessine librement. Avec l'outil des points, tenez Ctrl."},
    {523, "LINE - Drag from the beginning to the end of a line.", "LIGNE - Glissez du début à la fin d'une ligne."},
    {524, "RAMP - Drag over a span: a ramp every beat. The wheel changes how long one is.",
     "RAMPE - Glissez : une rampe par temps. La molette change sa longueur."},
    {525, "SINE - Drag over a span: a wave every beat. The wheel changes how long one is.",
     "SINUS - Glissez : une onde par temps. La molette change sa longueur."},
    {526, "RANDOM - Drag over a span: values that the dice throw. The wheel changes how long one is.",
     "HASARD - Glissez : des valeurs au hasard. La molette change leur longueur."},
    {527, "ARM - While it is on and the song plays, controls that you move are written as automation.",
     "ARMER - Pendant la lecture, les boutons que vous tournez sont écrits comme automation."},
    {701,
     "OVERDUB, REPLACE - What recording takes away: only what stands where a control moves, or all from there to the "
     "end.",
     "AJOUTER, REMPLACER - Ce que l'enregistrement enlève : là où un bouton bouge seulement, ou tout jusqu'à la fin."},
    {528, "TIME, VALUE - Of the selected point. Click to type it.",
     "TEMPS, VALEUR - Du point choisi. Cliquez pour taper."},
    {529, "CLEAR - Removes all points of this lane.", "VIDER - Efface tous les points de cette courbe."},
    {532,
     "LANE - What stands below the notes: their velocities, or any lane of the pattern's automation. Click adds a "
     "point, drag moves it, Ctrl draws freely, the wheel changes the value.",
     "COURBE - Ce qui figure sous les notes : leurs vélocités, ou toute courbe d'automation du motif. Un clic ajoute "
     "un point, tirer le déplace, Ctrl dessine librement, la molette change la valeur."},
    {530, "LANES - Everything that can be automated, what is in use first. Click to show a lane.",
     "COURBES - Tout ce qui s'automatise, d'abord ce qui sert. Cliquez pour montrer une courbe."},
    {531,
     "CURVE - Click adds a point, dragging moves it, Shift makes it fine, Alt is free of the grid. Drag with the "
     "right button to select.",
     "COURBE - Un clic ajoute un point, glissez pour le déplacer, Maj affine, Alt quitte la grille. Glissez avec le "
     "bouton droit pour choisir."},
    // Ball pad
    {540,
     "PAD - Drag a ball, or throw it: it glides until you catch it. Shift makes it fine, Alt or Ctrl+Shift + click "
     "puts it in the middle, double click types its place.",
     "PAVÉ - Glissez une bille, ou lancez-la : elle glisse jusqu'à ce que vous l'attrapiez. Maj affine, Alt ou "
     "Ctrl+Maj "
     "+ clic la met au milieu, double-clic tape sa place."},
    {541, "BALLS - Each ball moves the controls that are assigned to it.",
     "BILLES - Chaque bille tourne les boutons qui lui sont assignés."},
    {542, "NEW PLACE - The ball jumps by itself, every so many steps.",
     "NOUVEAU LIEU - La bille saute d'elle-même, tous les tant de pas."},
    {543, "MIDI - Channel and controllers by which the ball is moved.",
     "MIDI - Canal et contrôleurs qui déplacent la bille."},
    {544, "LEARN - Then move any knob: it follows this axis of the ball.",
     "LIER - Puis tournez un bouton : il suivra cet axe de la bille."},
    {545, "KEEP LAST 60 S - Writes what the ball did in the last minute of playing as automation.",
     "GARDER 60 S - Écrit comme automation ce que la bille a fait dans la dernière minute."},
    {546,
     "ASSIGNMENTS - Drag the ends of a bar to set the lowest and the highest value. Click X or Y for the other axis.",
     "ASSIGNATIONS - Glissez les bouts d'une barre pour régler le bas et le haut. Cliquez X ou Y pour l'autre axe."},
    {550, "NEXT STEPS - What the arpeggiator plays with the keys that are held.",
     "PAS SUIVANTS - Ce que l'arpégiateur joue avec les touches tenues."},
    {551, "WRITE TO PATTERN - Puts the arpeggio into the selected pattern, in place of its notes.",
     "VERS LE MOTIF - Met l'arpège dans le motif choisi, à la place de ses notes."},
    {552, "KEYS - Shows the keyboard in the strip. The arpeggiator plays the keys that are held there.",
     "CLAVIER - Montre le clavier de la tranche. L'arpégiateur joue les touches tenues là."},
    {570, "LATCH - Keys play on after they went up, until another chord begins or this is switched off.",
     "MAINTIEN - Les touches continuent une fois relâchées, jusqu'à l'accord suivant ou jusqu'à ce bouton."},
    {440, "XRUNS - How often the sound device did not get its block in time.",
     "XRUNS - Nombre de fois où la carte son n'a pas reçu son bloc à temps."},
    {441, "OUTPUT - The sound device that plays, and its sample rate. It is chosen under Settings, Audio & Midi.",
     "SORTIE - La carte son utilisée et sa fréquence. Elle se choisit dans Réglages, Audio & Midi."},
    {442, "PIANO ROLL - Opens the window in which the notes of the pattern are edited.",
     "PIANO ROLL - Ouvre la fenêtre où l'on édite les notes du motif."},
    {443, "AUTOMATION - Opens the window in which parameter changes over time are drawn.",
     "AUTOMATION - Ouvre la fenêtre où l'on dessine les changements de paramètres."},
    {444, "ARPEGGIATOR - Opens the settings of the arpeggiator of the current instrument.",
     "ARPEGGIATEUR - Ouvre les réglages de l'arpégiateur de l'instrument en cours."},
    {445, "BALL - Opens the X/Y pad that moves several parameters at once.",
     "BALLE - Ouvre le pad X/Y qui bouge plusieurs paramètres à la fois."},
    {446, "PLAYLIST - Opens the window in which patterns are put into the order of the song.",
     "PLAYLIST - Ouvre la fenêtre où les motifs sont mis dans l'ordre du morceau."},
    {447, "QUICK START - Opens the tutorial.", "PRISE EN MAIN - Ouvre le tutoriel."},
    {448, "ADD AN INSTRUMENT - Choose a plug-in from the list, or an instrument or plug-in file.",
     "AJOUTER UN INSTRUMENT - Choisissez un plug-in de la liste, ou un fichier d'instrument ou de plug-in."},
    {449,
     "SHARED EFFECT - An effect that every instrument can send to. Click to choose the plug-in, its bank and its "
     "program.",
     "EFFET PARTAGÉ - Un effet auquel chaque instrument peut envoyer. Cliquez pour choisir le plug-in, sa banque et "
     "son programme."},
    {450,
     "MASTER INSERT - An effect through which the whole sound goes. The button on the left switches it on and off.",
     "INSERT MASTER - Un effet que tout le son traverse. Le bouton de gauche l'active ou le coupe."},
    {451, "EDIT - Opens the window of the effect.", "ÉDITER - Ouvre la fenêtre de l'effet."},
    {452,
     "MASTER LEVEL - Level of the whole sound. Double click or right button: type decibels. Alt, or Ctrl+Shift, + "
     "click: full level, 0 dB.",
     "NIVEAU MASTER - Niveau de tout le son. Double clic ou bouton droit : taper des décibels. Alt, ou Ctrl+Maj, + "
     "clic : niveau maximum, 0 dB."},
    {453,
     "METER - Peak level of the left and right channel. The mark on top stays lit after clipping until you click it.",
     "VU-MÈTRE - Niveau crête des voies gauche et droite. La marque du haut reste allumée après une saturation, "
     "jusqu'au clic."},
    {454,
     "HEADPHONES - Level of what you hear. A recording is not changed by it. Double click or right button: type "
     "decibels. Alt, or Ctrl+Shift, + click: full level, 0 dB.",
     "CASQUE - Niveau de ce que vous entendez. Un enregistrement n'en est pas changé. Double clic ou bouton droit : "
     "taper des décibels. Alt, ou Ctrl+Maj, + clic : niveau maximum, 0 dB."},
    {455,
     "CROSSFADER - Fades between the instruments of group A and those of group B. Instruments in neither group always "
     "sound. Double click: the middle.",
     "CROSSFADER - Passe des instruments du groupe A à ceux du groupe B. Les instruments sans groupe sonnent "
     "toujours. Double clic : le milieu."},
    {456, "PRESETS - Recalls the preset of this number in every instrument that has one. Arrow keys step through them.",
     "PRESETS - Rappelle le preset de ce numéro dans chaque instrument qui en a un. Les flèches passent de l'un à "
     "l'autre."},
    {457, "PRESETS BY MIDI - The channel, the first note or the program changes that select presets.",
     "PRESETS PAR MIDI - Le canal, la première note ou les changements de programme qui choisissent les presets."},
    {458, "RECORDER - Records the master output to a Wave or MP3 file. A second click ends the recording.",
     "ENREGISTREUR - Enregistre la sortie master dans un fichier Wave ou MP3. Un second clic termine."},
    {459, "SCOPE - The master output: left channel blue, right channel red.",
     "OSCILLOSCOPE - La sortie master : voie gauche en bleu, voie droite en rouge."},
    {460,
     "TITLE - Click twice to rename the instrument. The right button opens the menu of the instrument. Drag the grip "
     "behind it to move it.",
     "TITRE - Double clic pour renommer l'instrument. Le bouton droit ouvre son menu. Tirez la poignée qui suit pour "
     "le déplacer."},
    {461, "PLUG-IN - Choose the plug-in that this instrument plays, its bank and its program.",
     "PLUG-IN - Choisissez le plug-in que joue cet instrument, sa banque et son programme."},
    {462, "EDIT - Opens the window of the plug-in.", "ÉDITER - Ouvre la fenêtre du plug-in."},
    {463, "ARPEGGIATOR - Plays the held keys one after the other. The right button opens its settings.",
     "ARPÉGIATEUR - Joue les touches tenues l'une après l'autre. Le bouton droit ouvre ses réglages."},
    {464, "KEYBOARD - Shows the keyboard below the strip.", "CLAVIER - Montre le clavier sous la tranche."},
    {465, "MIDI INPUT - Channel, key range, transposition and what passes to the plug-in.",
     "ENTRÉE MIDI - Canal, étendue, transposition et ce qui passe au plug-in."},
    {466, "MIDI ACTIVITY - Lit while keys are held.", "ACTIVITÉ MIDI - Allumé tant que des touches sont tenues."},
    {467, "PRESETS - A click recalls a preset of this instrument, + stores a new one. The right button opens the menu.",
     "PRESETS - Un clic rappelle un preset de cet instrument, + en mémorise un nouveau. Le bouton droit ouvre le "
     "menu."},
    {468, "OPEN, CLOSE - Shows or hides the body of the strip. With Shift those of all strips.",
     "OUVRIR, FERMER - Montre ou cache le corps de la tranche. Avec Maj, de toutes les tranches."},
    {469,
     "KEYBOARD - Click a key to play it. With Ctrl or Shift it stays down until the next such click. The wheel moves "
     "along.",
     "CLAVIER - Cliquez une touche pour la jouer. Avec Ctrl ou Maj elle reste enfoncée jusqu'au prochain clic de ce "
     "genre. La molette défile."},
    {470,
     "LEVEL - Level of the instrument. Double click or right button: type decibels. Alt, or Ctrl+Shift, + click: that "
     "of a new one, -9.5 dB. Shift makes the drag finer.",
     "NIVEAU - Niveau de l'instrument. Double clic ou bouton droit : taper des décibels. Alt, ou Ctrl+Maj, + clic : "
     "celui d'un nouvel instrument, -9.5 dB. Maj affine le mouvement."},
    {471, "MUTE - Silences the instrument.", "MUTE - Coupe l'instrument."},
    {472, "SOLO - Only instruments in solo are heard. With Solo Cumul Mode several can be.",
     "SOLO - Seuls les instruments en solo s'entendent. Avec Solos cumulés, plusieurs à la fois."},
    {473, "PAN - Place between left and right. Double click: centre. Digits over it: -100 left to 100 right.",
     "PAN - Place entre gauche et droite. Double clic : centre. Chiffres tapés dessus : de -100 à gauche à 100 à "
     "droite."},
    {474, "CROSSFADE A - The instrument belongs to side A of the crossfader.",
     "CROSSFADE A - L'instrument appartient au côté A du crossfader."},
    {475, "CROSSFADE B - The instrument belongs to side B of the crossfader.",
     "CROSSFADE B - L'instrument appartient au côté B du crossfader."},
    {476, "SYNCHRO - The pattern restarts with the longest one while Synchro of the transport is on.",
     "SYNCHRO - Le motif repart avec le plus long quand Synchro du transport est actif."},
    {477, "METER - Peak level of the instrument.", "VU-MÈTRE - Niveau crête de l'instrument."},
    {478,
     "ARPEGGIATOR - Silent: it plays the keys of the keyboard below the strip, which is hidden. Show it with the "
     "button "
     "to the right.",
     "ARPÉGIATEUR - Muet : il joue les touches du clavier sous la tranche, qui est caché. Le bouton à droite le "
     "montre."},
    {479,
     "COUNT-IN - Bars that the metronome counts before a recording of notes begins: none, 1 or 2. What you strike up "
     "to "
     "half a beat too early goes on the first step.",
     "DÉCOMPTE - Mesures comptées par le métronome avant un enregistrement de notes : aucune, 1 ou 2. Ce que vous "
     "jouez "
     "jusqu'à un demi-temps trop tôt va sur le premier pas."},
    {480,
     "STEPS - Click a step to set or clear its note, drag across to paint, move up or down while pressed for the "
     "velocity. Ctrl+click restarts the pattern at that step; the right button has more. Longer patterns have pages "
     "of 64 steps, which the wheel turns.",
     "PAS - Cliquez un pas pour poser ou effacer sa note, glissez pour peindre, montez ou descendez en tenant le "
     "bouton pour la vélocité. Ctrl+clic fait repartir le motif à ce pas ; le bouton droit offre plus. Les longs "
     "motifs "
     "ont des pages de 64 pas, que la molette tourne."},
    {481, "NUMBER OF STEPS - Length of the selected pattern.", "NOMBRE DE PAS - Longueur du motif sélectionné."},
    {482,
     "CHAIN, RANDOM, HOLD - What follows at the end of the pattern: the next marked one, a marked one at random, or "
     "this one. A right click on a pattern marks it.",
     "CHAÎNE, HASARD, MAINTIEN - Ce qui suit à la fin du motif : le prochain marqué, un marqué au hasard, ou celui-ci. "
     "Un clic droit sur un motif le marque."},
    {483, "SWING - Delays every second step. Double click: none.",
     "SWING - Retarde un pas sur deux. Double clic : aucun."},
    {650, "SOURCE - A sound file, by Open or dropped here, or the master output while it plays.",
     "SOURCE - Un fichier son, ouvert ou déposé ici, ou la sortie master pendant la "
     "lecture."},
    {651,
     "ENVELOPE - Drag the line for the threshold, the flag for the downbeat; double click "
     "makes a beat the first of "
     "its bar. The wheel scrolls, with Ctrl it zooms.",
     "ENVELOPPE - Tirez la ligne pour le seuil, le drapeau pour le premier temps ; double "
     "clic : ce temps commence la "
     "mesure. La molette défile, avec Ctrl elle zoome."},
    {652,
     "SETTINGS - What the detector listens to and what counts as a hit, in the order the "
     "sound takes. At 0 each is its "
     "default. They are kept in the project.",
     "RÉGLAGES - Ce que le détecteur écoute et ce qui compte comme frappe, dans l'ordre du "
     "son. À 0 chacun est par "
     "défaut. Ils sont gardés dans le projet."},
    {653,
     "TEMPO - Halves, doubles or triples what was found. Four taps choose the nearest "
     "multiple.",
     "TEMPO - Divise ou multiplie ce qui a été trouvé. Taper quatre fois choisit le multiple "
     "le plus proche."},
    {654, "SET THE TEMPO - The project takes the tempo that was found.",
     "RÉGLER LE TEMPO - Le projet prend le tempo trouvé."},
    {655, "CUT LOOPS - Opens the loop creator with this file, tempo and downbeat.",
     "COUPER - Ouvre le créateur de boucles avec ce fichier, ce tempo et ce premier temps."},
    {656,
     "HITS INTO THE PATTERN - From the bar on the left of the picture on, as many steps as "
     "the selected pattern has, "
     "as notes of this key.",
     "FRAPPES DANS LE MOTIF - À partir de la mesure à gauche de l'image, sur la longueur du "
     "motif choisi, en notes de "
     "cette touche."},
    {660, "SOUND FILE - Wave, MP3, FLAC, Ogg, Opus or AIFF; or drop one on this window.",
     "FICHIER SON - Wave, MP3, FLAC, Ogg, Opus ou AIFF ; ou déposez-le sur cette fenêtre."},
    {661, "TEMPO - Of the file; click to type it, tap it, or look closer in the rhythm detector.",
     "TEMPO - Du fichier ; cliquez pour le saisir, tapez-le, ou voyez le détecteur de "
     "rythme."},
    {662,
     "WAVEFORM - Drag inside the loop to move it, its ends for its length, elsewhere for "
     "another one; Alt does not "
     "snap. The wheel zooms, with Shift it scrolls. Left and right move by a step, with "
     "Shift by 0.1 ms.",
     "FORME D'ONDE - Tirez la boucle pour la déplacer, ses bouts pour sa longueur, ailleurs "
     "pour une autre ; Alt ne "
     "cale pas. La molette zoome, avec Maj elle défile. Gauche et droite décalent, avec Maj "
     "de 0,1 ms."},
    {663, "LOOP - How many bars it has, and where its start snaps to.",
     "BOUCLE - Combien de mesures, et sur quoi son début se cale."},
    {664,
     "PLAY LOOP - Plays the marked loop with the song, again and again; in time with it or "
     "at its own tempo.",
     "JOUER - Joue la boucle avec le morceau, sans fin ; calée sur lui ou à son tempo."},
    {665,
     "SEAM - The end fades into what lies before the start, so the length stays. Green: the "
     "seam jumps less than the "
     "loop itself does.",
     "RACCORD - La fin se fond dans ce qui précède le début, la longueur reste. Vert : le "
     "raccord saute moins que la "
     "boucle elle-même."},
    {666,
     "LOOPS TO WRITE - Enter adds the marked one, Delete takes one off; All of the file cuts "
     "it from the downbeat to "
     "its end.",
     "BOUCLES À ÉCRIRE - Entrée ajoute la boucle marquée, Suppr l'enlève ; Tout le fichier "
     "le découpe du premier temps "
     "à la fin."},
    {667,
     "WRITE - Name, format and folder of the files. QUIB Loops plays what is in the folder "
     "at once.",
     "ÉCRIRE - Nom, format et dossier des fichiers. QUIB Loops joue aussitôt ce que contient "
     "le dossier."},
    {800, "FROM THE SONG - Renders the loop of the song; what rings on after it is laid over its beginning.",
     "DU MORCEAU - Rend la boucle du morceau ; ce qui résonne après sa fin est posé sur son début."},
    {670, "MORE - A menu of what the closed strip hides: plug-in, inserts, MIDI input, tools and switches.",
     "PLUS - Un menu de ce que la tranche fermée cache : plug-in, inserts, entrée MIDI, outils et interrupteurs."},
    {674, "PRESETS - Switched off: Settings, Presets On lets the console and MIDI recall them.",
     "PRESETS - Désactivés : Réglages, Presets actifs permet à la console et au MIDI de les rappeler."},
    {484, "EQUALISER - Switches the equaliser of the instrument.", "ÉGALISEUR - Active l'égaliseur de l'instrument."},
    {485,
     "EQUALISER CURVE - Drag a handle sideways for the frequency, up and down for the gain; the wheel sets the "
     "resonance. Double click: flat.",
     "COURBE D'ÉGALISATION - Tirez une poignée de côté pour la fréquence, en hauteur pour le gain ; la molette règle "
     "la résonance. Double clic : plat."},
    {486, "INSERT - An effect of this instrument alone. Click to switch it, right button to choose it.",
     "INSERT - Un effet de cet instrument seul. Clic pour l'activer, bouton droit pour le choisir."},
    {487,
     "SEND - How much of the instrument goes to the shared effect. Drag for the level, or type decibels over it; "
     "double click: none. The lamp switches it, the right button chooses the effect.",
     "SEND - Part de l'instrument envoyée à l'effet partagé. Tirez pour le niveau, ou tapez des décibels dessus ; "
     "double clic : rien. Le voyant l'active, le bouton droit choisit l'effet."},
    // The song
    {490,
     "SONG - Click to add an item, drag to paint it across bars, drag an item to move it, its right end to repeat it. "
     "Up and down choose the pattern, Delete held removes what is pressed. Double click opens the piano roll.",
     "MORCEAU - Clic : ajoute un élément, tirez pour le peindre sur des mesures ; tirez un élément pour le déplacer, "
     "sa "
     "fin pour le répéter. Haut et bas choisissent le motif, Suppr tenue enlève. Double clic : piano roll."},
    {491,
     "RULER - Above: drag the loop, its ends, or a new one. Below: click or drag to go to a place; with Shift a drag "
     "draws the loop.",
     "RÈGLE - En haut : tirez la boucle, ses bouts, ou une autre. En bas : clic ou glisser pour aller à un endroit ; "
     "avec "
     "Maj, glisser dessine la boucle."},
    {492, "INSTRUMENT - A click makes it the current one.", "INSTRUMENT - Un clic en fait l'instrument courant."},
    {493, "NEW ITEM - The pattern that a click on an empty place adds.",
     "ÉLÉMENT - Le motif qu'un clic sur un endroit vide ajoute."},
    {494, "SNAP - Where items begin and end. Alt held while dragging: any step.",
     "GRILLE - Où les éléments commencent et finissent. Alt tenue : n'importe quel pas."},
    {495, "FOLLOW - Turns the page when the playhead leaves it.", "SUIVRE - Tourne la page avec la tête de lecture."},
    {496, "LOOP SELECTION - Loops the selected items (Ctrl+L).", "BOUCLER - Boucle les éléments choisis (Ctrl+L)."},
    {497,
     "INSERT TIME - Moves everything behind, in all instruments, by the length of the selection, else of the loop, "
     "else "
     "by a bar.",
     "INSÉRER - Décale tout ce qui suit, dans tous les instruments, de la longueur de la sélection, sinon de la "
     "boucle, "
     "sinon d'une mesure."},
    {498, "DELETE TIME - Takes the selection, else the loop, else the bar of the playhead out of all instruments.",
     "SUPPRIMER - Ôte la sélection, sinon la boucle, sinon la mesure de la tête de lecture à tous les instruments."},
    {499, "MAKE UNIQUE - The selected items play a copy of their pattern in a free place.",
     "RENDRE UNIQUE - Les éléments choisis jouent une copie de leur motif dans une place libre."},
    {500, "WHOLE WINDOW - The song takes the place of the strips (Shift+F6).",
     "TOUTE LA FENÊTRE - Le morceau prend la place des pistes (Maj+F6)."},
    {501, "CLOSE - Hides the song (F6).", "FERMER - Cache le morceau (F6)."},
    {502, "SPLIT - Drag to share the room of strips and song.", "PARTAGE - Tirez pour partager la place."},
    {503, "PLAY THE PATTERNS - Switches to pattern mode.", "JOUER LES MOTIFS - Passe au mode motif."},
    {504, "PUT INTO THE SONG - Every instrument's selected pattern, repeated from the beginning.",
     "METTRE DANS LE MORCEAU - Le motif choisi de chaque instrument, répété depuis le début."},
    {553,
     "LAUNCH - Where a pattern begins that is chosen while playing: at the end of the one that plays, or with the next "
     "beat or bar, which holds for presets of all instruments, too. The cell that waits has a white frame.",
     "LANCER - Où commence un motif choisi en jouant : à la fin de celui qui joue, ou au prochain temps, à la "
     "prochaine "
     "mesure ; cela vaut aussi pour les presets de tous les instruments. La case qui attend a un cadre blanc."},
    {554, "MORE - All that can be done to the song and to the selected items, with the keys.",
     "PLUS - Tout ce qui se fait au morceau et aux éléments choisis, avec les touches."},
    {505,
     "PERFORM - Armed, the patterns that you choose while playing in pattern mode are written into the song, from its "
     "present place on. One step of undo a take.",
     "EN DIRECT - Armé, les motifs choisis pendant la lecture en mode motif sont écrits dans le morceau, à partir de "
     "sa "
     "place actuelle. Une prise est une étape d'annulation."},
    {506,
     "MARKER - Names the bar of the playhead; an empty name takes the marker away. Right button in the ruler: its "
     "menu.",
     "REPÈRE - Nomme la mesure de la tête de lecture ; un nom vide l'ôte. Bouton droit dans la règle : son menu."},
    {620,
     "LESSON - Begins this lesson of the tutorial. What it needs is there when it begins; your project comes back.",
     "LEÇON - Commence cette leçon. Ce qu'il lui faut est là au début ; votre projet revient."},
    {621, "SKIP - Goes on to the next step without doing this one.",
     "PASSER - Va à l'étape suivante sans faire celle-ci."},
};

}  // namespace quib
