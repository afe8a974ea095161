// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of sound output, MIDI input and timebase, with a tone and a lamp to check them.
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "app/Dialogs.h"
#include "app/console/SlotMenu.h"
#include "devices/OutputDeviceList.h"
#include "document/CSettings.h"
#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kPlacement = "SoundConfig";
constexpr int kMostDeviceCharacters = 200;
constexpr int kShownCharacters = 28;
constexpr int kLampMilliseconds = 200;

// The whole of what was typed counts, be it in the list or not.
QComboBox* MakeList(const QStringList& choices, const QString& text) {
    auto* const list = new QComboBox;
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->addItems(choices);
    list->setCurrentText(text);
    list->setMinimumContentsLength(kShownCharacters);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return list;
}

QStringList OutputNames() {
    QStringList names;
    for (const std::string& name : ListOutputDevices()) names.append(QString::fromStdString(name));
    return names;
}

QStringList MidiNames(const COutputManager& output) {
    QStringList names = {QLatin1String(COutputManager::kMidiOff)};
    for (const std::string& name : output.ListMidiInputs()) names.append(QString::fromStdString(name));
    return names;
}

class CAudioDialog : public QDialog {
public:
    CAudioDialog(QWidget* parent, CWorkstation& owner)
        : QDialog(parent), workstation(owner), settings(owner.Settings()) {
        setWindowTitle(Text("Audio & Midi"));
        const AudioChoice now = ReadAudioChoice(settings);
        device = MakeList(OutputNames(), now.outputDevice);
        rate = MakeList({"44100", "48000", "96000", "192000"}, now.sampleRate);
        size = MakeList({"256", "512", "1024", "2048", "4096", "8192", "16384"}, now.bufferSize);
        timebase = MakeList({"48", "96", "192", "384", "768"}, now.timebase);
        midi = MakeList(MidiNames(workstation.Output()), now.midiInDevice);
        device->lineEdit()->setPlaceholderText(QStringLiteral("default"));
        midi->lineEdit()->setPlaceholderText(QLatin1String(COutputManager::kMidiOff));
        BuildLayout();
        connect(&timer, &QTimer::timeout, this, [this] { Refresh(); });
        timer.start(40);
        adjustSize();
        const QRect missing = CSettings::Centred(QDialog::size(), CSettings::ScreenSize());
        move(settings.ReadWindowPlacement(QLatin1String(kPlacement), missing).topLeft());
    }
    ~CAudioDialog() override { workstation.Transport().SetTestTone(false); }

protected:
    void done(int result) override {
        if (result == Accepted) Apply();
        settings.WriteWindowPlacement(QLatin1String(kPlacement), QRect(pos(), QDialog::size()));
        QDialog::done(result);
    }

private:
    void BuildLayout();
    void Apply();
    void Refresh();
    void ShowChannel();
    std::shared_ptr<CInstrument> Shown() const {
        return workstation.Stack().Instrument(workstation.Selection().CurrentIndex());
    }

    CWorkstation& workstation;
    CSettings& settings;
    QComboBox* device;
    QComboBox* rate;
    QComboBox* size;
    QComboBox* timebase;
    QComboBox* midi;
    QComboBox* channel = nullptr;
    QLabel* state = nullptr;
    QLabel* lamp = nullptr;
    QProgressBar* level = nullptr;
    QTimer timer;
    std::uint32_t midiCount = 0;
    int lampLeft = 0;  // milliseconds
};

void CAudioDialog::BuildLayout() {
    auto* const form = new QFormLayout(this);
    form->addRow(Text("Output device"), device);
    form->addRow(Text("Sample rate (Hz)"), rate);
    form->addRow(Text("Buffer size (frames)"), size);
    form->addRow(Text("Timebase (ticks per quarter note)"), timebase);
    form->addRow(Text("MIDI input"), midi);

    channel = new QComboBox;
    for (int number = 1; number <= 16; ++number) channel->addItem(QString::number(number));
    channel->setEnabled(Shown() != nullptr);
    ShowChannel();
    form->addRow(Text("MIDI channel of the selected instrument"), channel);

    auto* const tone = new QPushButton(Text("Test tone"));
    tone->setCheckable(true);
    connect(tone, &QPushButton::toggled, this, [this](bool on) { workstation.Transport().SetTestTone(on); });
    level = new QProgressBar;
    level->setRange(0, 60);
    level->setTextVisible(false);
    auto* const check = new QHBoxLayout;
    check->addWidget(tone);
    check->addWidget(level, 1);
    form->addRow(Text("Level check"), check);

    lamp = new QLabel(QStringLiteral("\u25CF"));
    form->addRow(Text("MIDI activity"), lamp);
    state = new QLabel;
    form->addRow(Text("Now playing on"), state);
    midiCount = workstation.Audio().Picture().midiCount;

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    Refresh();
}

void CAudioDialog::ShowChannel() {
    const auto instrument = Shown();
    const int selector = instrument ? instrument->midi.channel.Get() : kChannelOff;
    channel->setPlaceholderText(instrument ? ChannelText(selector) : QString());
    channel->setCurrentIndex(selector > kChannelOmni ? selector - 2 : -1);
}

void CAudioDialog::Apply() {
    const AudioChoice choice{device->currentText(), rate->currentText(), size->currentText(), midi->currentText(),
                             timebase->currentText()};
    const AudioChanges changes = StoreAudioChoice(settings, choice);
    if (changes.output) {
        // A device that was forced stays until another one is chosen.
        changes.device ? workstation.OpenOutput() : workstation.RestartOutput();
    } else if (changes.midi) {
        workstation.Output().OpenMidiIn(choice.midiInDevice.toStdString());
    }
    workstation.Audio().settings.timebase.Set(changes.timebase);
    const auto instrument = Shown();
    if (!instrument || channel->currentIndex() < 0) return;
    CIntegerValue& selector = instrument->midi.channel;
    const int before = selector.Get();
    selector.Set(channel->currentIndex() + 2);
    workstation.Changes().ValueEdited(Part(instrument, selector), before, selector.Get(), Text("MIDI channel"));
}

void CAudioDialog::Refresh() {
    CAudio& audio = workstation.Audio();
    const float peak = std::max(audio.masterPeak[0].Get(), audio.masterPeak[1].Get());
    level->setValue(peak > 0.001F ? static_cast<int>(60.0F + 20.0F * std::log10(std::min(peak, 1.0F))) : 0);
    const std::uint32_t count = audio.Picture().midiCount;
    if (count != midiCount) lampLeft = kLampMilliseconds;
    midiCount = count;
    lamp->setStyleSheet(lampLeft > 0 ? QStringLiteral("color: #5ad85a") : QStringLiteral("color: #555555"));
    lampLeft -= timer.interval();
    const COutputDevice* const now = workstation.Output().Device();
    state->setText(now == nullptr ? Text("nothing")
                                  : QStringLiteral("%1, %2 Hz, %3")
                                        .arg(QString::fromStdString(now->Name()))
                                        .arg(now->Format().sampleRate)
                                        .arg(now->Format().blockSize));
}

}  // namespace

int ToInteger(const QString& text) {
    const QByteArray digits = text.toLatin1();
    const long value = std::strtol(digits.constData(), nullptr, 10);
    return static_cast<int>(std::clamp(value, -2147483648L, 2147483647L));
}

AudioChoice ReadAudioChoice(const CSettings& settings) {
    const auto number = [&](const char* section, const char* name, int missing) {
        return QString::number(settings.ReadSettingInt(QLatin1String(section), QLatin1String(name), missing));
    };
    AudioChoice choice;
    choice.outputDevice = settings.ReadSettingString(kAudioSection, QStringLiteral("OutputDevice"));
    choice.sampleRate = number(kAudioSection, "SampleRate", 44100);
    choice.bufferSize = number(kAudioSection, "BufferSize", 2048);
    choice.midiInDevice = settings.ReadSettingString(kAudioSection, QStringLiteral("MidiInDevice"));
    choice.timebase = number(kTimeSignatureSection, "Timebase", 96);
    return choice;
}

AudioChanges StoreAudioChoice(CSettings& settings, const AudioChoice& choice) {
    const AudioChoice before = ReadAudioChoice(settings);
    const QString device = choice.outputDevice.left(kMostDeviceCharacters);
    AudioChanges changes;
    changes.device = device != before.outputDevice;
    changes.output = device != before.outputDevice || ToInteger(choice.sampleRate) != ToInteger(before.sampleRate) ||
                     ToInteger(choice.bufferSize) != ToInteger(before.bufferSize);
    changes.midi = choice.midiInDevice != before.midiInDevice;
    changes.timebase = ToInteger(choice.timebase);
    settings.WriteSettingString(kAudioSection, QStringLiteral("OutputDevice"), device);
    settings.WriteSettingInt(kAudioSection, QStringLiteral("SampleRate"), ToInteger(choice.sampleRate));
    settings.WriteSettingInt(kAudioSection, QStringLiteral("BufferSize"), ToInteger(choice.bufferSize));
    settings.WriteSettingString(kAudioSection, QStringLiteral("MidiInDevice"), choice.midiInDevice);
    settings.WriteSettingInt(kTimeSignatureSection, QStringLiteral("Timebase"), changes.timebase);
    settings.Flush();
    return changes;
}

bool RunAudioDialog(QWidget* parent, CWorkstation& workstation) {
    return CAudioDialog(parent, workstation).exec() == QDialog::Accepted;
}

}  // namespace quib
