# SPDX-License-Identifier: GPL-3.0-or-later
# Headers that nearly every unit of a layer reads, compiled once. They hide a missing #include, so
# scripts/lint builds without them.
option(QUIB_PRECOMPILE "Compile the headers of the standard library and of Qt once" ON)

set(QUIB_STANDARD_HEADERS
    <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <deque> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <span> <string> <thread> <utility> <vector>)
set(QUIB_WINDOW_HEADERS
    ${QUIB_STANDARD_HEADERS} <QAction> <QApplication> <QComboBox> <QDateTime> <QDialog> <QDir> <QFileDialog>
    <QFileInfo> <QHash> <QImage> <QInputDialog> <QKeyEvent> <QLabel> <QLineEdit> <QMenu> <QMenuBar> <QMessageBox>
    <QMimeData> <QPainter> <QPushButton> <QSet> <QTimer> <QUndoStack> <QVBoxLayout> <QWheelEvent>)

# So that the compiler cache sees which headers a unit has.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(QUIB_PRECOMPILED_OPTIONS -fpch-preprocess)
endif()

# quib_headers(NAME HEADERS...): what quib_precompiled can name.
function(quib_headers name)
  if(NOT QUIB_PRECOMPILE)
    return()
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "// Only its headers matter.\n")
  add_library(quib_${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  set_target_properties(quib_${name} PROPERTIES AUTOMOC OFF)
  target_precompile_headers(quib_${name} PRIVATE ${ARGN})
  target_compile_options(quib_${name} PRIVATE ${QUIB_PRECOMPILED_OPTIONS})
  target_link_libraries(quib_${name} PRIVATE quib_warnings)
endfunction()

# The Qt libraries' own definitions differ from layer to layer, so only those that all layers have.
function(quib_qt_headers name)
  quib_headers(${name} ${ARGN})
  if(QUIB_PRECOMPILE)
    target_include_directories(quib_${name} SYSTEM
                               PRIVATE $<TARGET_PROPERTY:Qt6::Widgets,INTERFACE_INCLUDE_DIRECTORIES>)
    target_link_libraries(quib_${name} PRIVATE Qt6::Core)
    target_compile_definitions(quib_${name} PRIVATE QT_GUI_LIB QT_NO_KEYWORDS)
  endif()
endfunction()

function(quib_precompiled target headers)
  if(QUIB_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM quib_${headers})
    target_compile_options(${target} PRIVATE ${QUIB_PRECOMPILED_OPTIONS})
  endif()
endfunction()
