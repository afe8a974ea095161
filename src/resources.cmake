# SPDX-License-Identifier: GPL-3.0-or-later
# Embeds the skin and the font of the windows into quib_controls.
file(GLOB skin CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/skin/*.svg
     ${PROJECT_SOURCE_DIR}/resources/skin/palette-*.txt)
qt_add_resources(quib_controls skin PREFIX /skin BASE ${PROJECT_SOURCE_DIR}/resources/skin FILES ${skin})

# The same letters on every machine.
find_path(QUIB_FONT_FOLDER Inter-Regular.otf PATHS /usr/share/fonts/opentype/inter /usr/share/fonts REQUIRED)
qt_add_resources(quib_controls fonts PREFIX /fonts BASE ${QUIB_FONT_FOLDER}
                 FILES ${QUIB_FONT_FOLDER}/Inter-Medium.otf ${QUIB_FONT_FOLDER}/Inter-SemiBold.otf)

# The panels of the built-in plug-ins.
file(GLOB panels CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/panels/*.panel)
qt_add_resources(quib_controls panels PREFIX /panels BASE ${PROJECT_SOURCE_DIR}/resources/panels FILES ${panels})
