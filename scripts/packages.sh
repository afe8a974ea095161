# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2034
# The Debian 12 packages that the project needs. Sourced by scripts/setup.

buildPackages=(
    g++ cmake ninja-build ccache pkg-config
    libasound2-dev libjack-jackd2-dev
    libsndfile1-dev libsamplerate0-dev libebur128-dev
    libcli11-dev libfmt-dev
    qt6-base-dev qt6-svg-dev fonts-inter
    libgtest-dev libgmock-dev libbenchmark-dev
)

# Every VST 2 plug-in of Debian, for scripts/plugins.
pluginPackages=(
    amsynth zynaddsubfx-vst dpf-plugins-vst dragonfly-reverb-vst lsp-plugins-vst zam-plugins iem-plugin-suite-vst
)

testPackages=(
    amsynth dragonfly-reverb-vst dpf-plugins-vst
    xvfb xauth xdotool openbox locales
    gsettings-desktop-schemas
    dbus at-spi2-core python3-gi gir1.2-atspi-2.0
    sox ffmpeg libmp3lame0 jackd2 python3
    clang clang-format clang-tidy libclang-rt-14-dev shellcheck
)

packagingPackages=(
    debhelper help2man pandoc weasyprint
    lintian desktop-file-utils appstream debootstrap
)
