#!/usr/bin/env python3
"""Mutation testing of core, models and views: plants one mistake at a time, and checks whether the tests notice it.

    Tests/mutations.py [--jobs N] [--list] [WORD…]    with words, only mistakes whose title or file contains one of them

It builds the test programs in build/mutations, without optimisation: then no function of an original is inlined into the sources
that are compiled together with it. Then, for each mistake, one object is compiled and linked in front of the original. First the
tests of the file that mirrors the source run, then all other tests of the same folder, without those of endurance and those that
measure time; a mistake that none of them notices has survived. The tests in Tests/System do not take part. The checkout is not
changed. The macOS sources have a script of their own, Tests/MacOS/mutations.py.

Run it by hand; the latest result is in Documentation/Testing.md. The exit status is 1 when a mistake survived that EQUIVALENT does
not explain.
"""

import argparse
import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "Support"))
import mutation
import quick

BUILD = os.path.join(mutation.ROOT, "build/mutations")
# How long tests may take: processor time first, because that does not depend on what else the computer does.
PROCESSOR_SECONDS = 120
SECONDS = 1200

CORE = "Sources/FenwhirlCore/"
APP = "Sources/Fenwhirl/"
CLIENT = APP + "HelperClient/"
LANGUAGE = APP + "Localization/"
MONITORING = APP + "Monitoring/"
PROCESSES = APP + "Processes/"
UPDATES = APP + "Updates/"
DESKTOP = APP + "Platform/Desktop/"
VIEWS = APP + "Views/"
COMPONENTS = VIEWS + "Components/"
APPLICATION = APP + "Application/"

# The test programs of each folder; the longest beginning of a source's path that is listed here decides.
PROGRAMS = {
    CORE: ("FenwhirlCoreTest", "HelperTest"),
    APP + "Helper": ("HelperArgumentsTest", "HelperTest"),
    CLIENT: ("HandBackRuleTest", "OutputTextTest"),
    LANGUAGE: ("LocalizationTest",),
    MONITORING: ("MonitoringDecisionTest", "PollerTest", "MonitorTest"),
    PROCESSES: ("ProcessListingTest", "AppQuittingTest", "ProcessApplicationTest", "ProcessMonitorTest"),
    UPDATES: ("UpdateVersionTest", "UpdateTextsTest", "UpdateDocumentTest", "UpdateCheckerTest"),
    DESKTOP: ("DesktopRulesTest", "DesktopTest"),
    VIEWS: ("ViewsTest",),
    COMPONENTS: ("ComponentValueTest", "ComponentTest", "ViewsTest"),
    APPLICATION: ("ApplicationTest", "SelfCheckTest"),
}

# Which test files of the views are the likeliest to notice a mistake, where there is none of the source's own name: they come first.
NEAR = {
    "AppsPageTest": ("AppList", "AppsView"),
    "DashboardTest": ("MachineView", "ControlView", "DashboardPage", "TemperatureCard", "FeaturedCard", "Banners", "PresetMenu"),
    "FanCardTest": ("FanRow", "FanList", "FanCurveControls", "FanSpeedControls", "SensorChoices"),
    "MainWindowTest": ("PageList", "LiveView", "ViewModels", "Sidebar", "PageArea", "HistoryChart"),
    "MenuPanelTest": ("MenuActions", "MenuError", "MenuFanList", "MenuFanRow", "MenuHeader", "MenuSensorRow"),
    "SensorsPageTest": ("RowList", "RowSlice", "SensorList"),
    "SettingsTest": ("PreferencesView", "PresetList", "ReportView", "AlertsPage", "AppearanceCard", "ControlCard", "LanguagePicker",
                     "PresetCard", "PresetsPage", "ReportCard", "SettingRow", "SettingsPage", "StartCard", "ThresholdsCard"),
    "WindowPolicyTest": ("WindowControl", "PanelControl"),
}

# Suites that come last, because they take longer than all others together.
LATE = ("BadInput", "LanguageChange", "SensorNames", "Symbols", "TextFit", "Tooltips", "Typography", "WindowSizes")
# Does not take part, because it measures time, like the tests that run alone.
LEFT_OUT = "RedrawLookups.*"

# Title, source file, the original text (its first occurrence is replaced), the mutated text.
MISTAKES = (
    # The controller's values.
    ("halves are rounded up to odd hundredths", CORE + "NumberText.cpp", "rest == half && hundredths % 2 == 1", "rest == half"),
    ("a carry into the whole part is lost", CORE + "NumberText.cpp", "        hundredths = 0;\n        ++whole;", "        hundredths = 0;"),
    ("hundredths lack their leading zero", CORE + "NumberText.cpp", "hundredths < 10 ?", "hundredths < 1 ?"),
    ("the sign of infinity is lost", CORE + "NumberText.cpp", 'value < 0 ? "-inf" : "inf"', '"inf"'),
    ("subnormal numbers have a hidden bit", CORE + "NumberText.cpp", "subnormal ? stored :", "false ? stored :"),
    ("2^63 counts as a 64-bit number", CORE + "NumberText.cpp", "value < beyondInt64)", "value <= beyondInt64)"),
    ("-2^63 is no 64-bit number", CORE + "NumberText.cpp", "value >= -beyondInt64", "value > -beyondInt64"),
    ("what is too small becomes the largest number", CORE + "NumberText.cpp", "value < 0 ? Limits::min()", "value > 0 ? Limits::min()"),
    ("a long fraction is computed with too large a shift", CORE + "NumberText.cpp", "fractionBits > 63", "fractionBits > 64"),
    ("a float is read from its end", CORE + "SMCValue.cpp", "bits = bits << 8U | bytes[i];", "bits = bits << 8U | bytes[3 - i];"),
    ("a short float is decoded", CORE + "SMCValue.cpp", 'type == "flt " && bytes.size() >= 4', 'type == "flt " && bytes.size() >= 3'),
    ("sp78 has no sign", CORE + "SMCValue.cpp", "static_cast<std::int16_t>(bigEndian", "static_cast<std::uint16_t>(bigEndian"),
    ("sp78 has seven fraction bits", CORE + "SMCValue.cpp", "/ 256.0", "/ 128.0"),
    ("fpe2 has no fraction bits", CORE + "SMCValue.cpp", "bigEndian(bytes.first(2)) >> 2U", "bigEndian(bytes.first(2))"),
    ("a fan's target in fpe2 is not limited", CORE + "SMCValue.cpp", "highestFanTargetRPM = 16000", "highestFanTargetRPM = 16384"),
    ("a negative value is not written as 0", CORE + "SMCValue.cpp", "if (value <= 0) {", "if (value <= -1000) {"),
    ("infinity is encoded", CORE + "SMCValue.cpp", "if (!std::isfinite(value)) {", "if (std::isnan(value)) {"),
    ("a byte is limited to 254", CORE + "SMCValue.cpp", "truncatedWithin(value, 255)", "truncatedWithin(value, 254)"),
    # The controller's keys.
    ("a refusal counts as an answer", CORE + "SMC.cpp", "output && output->result != SMCResult::success", "false"),
    ("values are written without their size", CORE + "SMC.cpp",
     "input.keyInfo.dataSize = size;\n    std::ranges", "std::ranges"),
    ("a short value is read beyond its size", CORE + "SMC.cpp", "std::min<std::size_t>(info.size, bytes.size())", "bytes.size()"),
    ("a stop is not seen between keys", CORE + "SMC.cpp", "(stopFlag_ != nullptr && stopFlag_->load(std::memory_order_relaxed)) || ", ""),
    ("a dead connection goes on being asked", CORE + "SMC.cpp", " || transport_->isDead();", ";"),
    ("more keys are asked for than an index can name", CORE + "SMC.cpp", "std::int64_t{1} << 32U", "std::int64_t{1} << 33U"),
    ("a negative number of keys is taken for many", CORE + "SMC.cpp", "(*whole, 0, indexesInRecord)", "(*whole, 1, indexesInRecord)"),
    ("a key's type with a byte beyond ASCII is shown", CORE + "SMC.cpp", "if ((code & beyondASCII) != 0) {", "if (false) {"),
    ("the last fan is left out", CORE + "SMCFans.cpp", "for (int index = 0; index < end && !shouldStop()", "for (int index = 0; index + 1 < end && !shouldStop()"),
    ("a fan that cannot be read ends the list", CORE + "SMCFans.cpp", "        if (!rpm) {\n            continue;", "        if (!rpm) {\n            break;"),
    ("minimum and maximum are exchanged", CORE + "SMCFans.cpp", 'fan.minRPM = readValue(fanKey(index, "Mn"))', 'fan.minRPM = readValue(fanKey(index, "Mx"))'),
    ("an unknown maximum counts as known", CORE + "SMCFans.cpp", "fan.isMaximumKnown = maximum.has_value();", "fan.isMaximumKnown = true;"),
    ("an unknown maximum is the speed, even of a fan at rest", CORE + "SMCFans.cpp", "maximum.value_or(*rpm > 1 ? *rpm : 1)", "maximum.value_or(*rpm)"),
    ("the target is the speed", CORE + "SMCFans.cpp", 'readValue(fanKey(index, "Tg")).value_or(*rpm)', "*rpm"),
    ("a fan may be driven below its minimum", CORE + "SMCFans.cpp", "if (target <= minimum) {", "if (false) {"),
    ("NaN is not replaced by a bound", CORE + "SMCFans.cpp", "if (!std::isfinite(static_cast<float>(target))) {", "if (std::isinf(target)) {"),
    ("infinity in single precision reaches a fan", CORE + "SMCFans.cpp", "std::isfinite(static_cast<float>(target))", "std::isfinite(target)"),
    ("a fan may be driven beyond its maximum", CORE + "SMCFans.cpp", "if (maximum < target) {", "if (false) {"),
    ("the mask of forced fans is off by one", CORE + "SMCFans.cpp", "1U << static_cast<unsigned>(index)", "2U << static_cast<unsigned>(index)"),
    ("a fan beyond the mask changes it", CORE + "SMCFans.cpp", "if (index >= forcedMaskBits) {", "if (index > forcedMaskBits) {"),
    ("the highest mask is refused", CORE + "SMCFans.cpp", "mask < 65536;", "mask < 65535;"),
    ("fans are not unlocked", CORE + "SMCFans.cpp", "static_cast<void>(writeValue(unlockKey, 1));", ""),
    ("the unlock stays when all fans are automatic", CORE + "SMCFans.cpp", "static_cast<void>(writeValue(unlockKey, 0));", ""),
    ("the unlock is taken from a manual fan", CORE + "SMCFans.cpp", "            return; // a fan that is still manual needs the unlock", "            break;"),
    ("the upper-case mode key is not looked for", CORE + "SMCFans.cpp", 'for (const std::string_view suffix : {"Md", "md"}) {\n        if (auto key', 'for (const std::string_view suffix : {"md"}) {\n        if (auto key'),
    ("a refused hand-back counts as done", CORE + "SMCFans.cpp", "        if (hasKey(key) && !writeValue(key, automaticMode)) {\n            succeeded = false;", "        if (hasKey(key) && !writeValue(key, automaticMode)) {\n            succeeded = true;"),
    ("a dead controller counts as handed back", CORE + "SMCFans.cpp", "return succeeded && !transport_->isDead();", "return succeeded;"),
    ("one fan that goes back makes up for one that does not", CORE + "SMCFans.cpp", "succeeded = resetFan(index) && succeeded;", "succeeded = resetFan(index) || succeeded;"),
    ("a negative mode counts as automatic", CORE + "SMCFans.cpp", "*mode > automaticMode || *mode < automaticMode;", "*mode > automaticMode;"),
    ("a sensor at 1 °C is discovered", CORE + "SMCTemperatures.cpp", "*celsius > discoveryLowestCelsius", "*celsius >= discoveryLowestCelsius"),
    ("a sensor at 130 °C is read", CORE + "SMCTemperatures.cpp", "*celsius > readingLowestCelsius && *celsius < highestCelsius", "*celsius > readingLowestCelsius && *celsius <= highestCelsius"),
    ("a sensor that cools down to 1 °C vanishes", CORE + "SMCTemperatures.cpp", "readingLowestCelsius = 0", "readingLowestCelsius = 1"),
    ("a key that is listed twice is two sensors", CORE + "SMCTemperatures.cpp", " || known.contains(*key)", ""),
    ("temperatures in float are no temperatures", CORE + "SMCTemperatures.cpp", ' || type == SMC::fourCC("flt ")', ""),
    ("half-bytes are exchanged in the report", CORE + "SMCReport.cpp", "text += digits[bytes[i] >> 4U];\n        text += digits[bytes[i] & 0xFU];", "text += digits[bytes[i] & 0xFU];\n        text += digits[bytes[i] >> 4U];"),
    ("the fan test begins at its minimum", CORE + "SMCFanWriteTest.cpp", "(fan.maxRPM - fan.minRPM) * 0.3", "(fan.maxRPM - fan.minRPM) * 0.0"),
    ("the fan test takes five seconds", CORE + "SMCFanWriteTest.cpp", "constexpr int seconds = 6;", "constexpr int seconds = 5;"),
    ("the fan test hands back all fans but the last", CORE + "SMCFanWriteTest.cpp", "fans.back().index + 1", "fans.back().index"),
    ("an ordinary user may test the fans", CORE + "SMCFanWriteTest.cpp", "if (effectiveUserId != 0) {", "if (false) {"),
    # The helper.
    ("+-1 is the index of a fan", APP + "HelperArguments.cpp", "if (text.starts_with('-')) {", "if (false) {"),
    ("what follows a number is ignored", APP + "HelperArguments.cpp", "error != std::errc() || stop != end", "error != std::errc()"),
    ("a speed may begin with a blank", APP + "HelperArguments.cpp", "*text == '\\0' || blanks.find(*text) != std::string_view::npos", "*text == '\\0'"),
    ("what follows a speed is ignored", APP + "HelperArguments.cpp", "stop == text || *stop != '\\0'", "stop == text"),
    ("a lone command to set sets", APP + "Helper.cpp", "arguments.size() < 3", "arguments.size() < 2"),
    ("auto with an index hands back all fans", APP + "Helper.cpp", "index ? smc.resetFan(*index) : smc.resetFans()", "smc.resetFans()"),
    ("an unknown command succeeds", APP + "Helper.cpp", "    return usageError;\n}\n\n} // namespace HelperMode", "    return success;\n}\n\n} // namespace HelperMode"),
    ("the version needs a controller", APP + "Helper.cpp", 'if (command == "version") {', 'if (command == "version" && openSMC()) {'),
    ("a refusal is reported as success", APP + "Helper.cpp", "return succeeded ? success : smcFailure;", "return success;"),
    # The rule for the emergency hand-back.
    ("a fan at constant speed goes back", CLIENT + "HandBackRule.cpp", "fan.isConstant ? Fate::isLeftAlone : Fate::goesBack", "Fate::goesBack"),
    ("a fan that does not run as chosen is pinned", CLIENT + "HandBackRule.cpp", "isConstant && fan.runsAsChosen ?", "isConstant ?"),
    ("without any fan known, none goes back", CLIENT + "HandBackRule.cpp", ".scope = HandBack::Scope::allFans, .indices = {}", ".scope = HandBack::Scope::indices, .indices = {}"),
    ("fans are handed back without a helper", CLIENT + "HandBackRule.cpp", "if (!isHelperInstalled) {", "if (false) {"),
    ("overlong characters pass", CLIENT + "OutputText.cpp", "lead == 0xE0 ? 0xA0 : 0x80", "0x80"),
    ("surrogates pass", CLIENT + "OutputText.cpp", "lead == 0xED ? 0x9F : 0xBF", "0xBF"),
    # What a poll decides.
    ("protection begins above its threshold", MONITORING + "PollDecision.cpp", "*primaryCelsius >= protectAt", "*primaryCelsius > protectAt"),
    ("protection ends as soon as it is cooler", MONITORING + "PollDecision.cpp", "*primaryCelsius < protectAt - boostHysteresisCelsius", "*primaryCelsius < protectAt"),
    ("protection ends at its lower bound", MONITORING + "PollDecision.cpp", "*primaryCelsius < protectAt - boostHysteresisCelsius", "*primaryCelsius <= protectAt - boostHysteresisCelsius"),
    ("protection goes on when it is switched off", MONITORING + "PollDecision.cpp", "!primaryCelsius || !protect)", "!primaryCelsius)"),
    ("92 °C is no emergency", MONITORING + "PollDecision.cpp", "*primaryCelsius >= emergencyCelsius", "*primaryCelsius > emergencyCelsius"),
    ("a fan with an unknown maximum is driven", MONITORING + "PollDecision.cpp", "isEmergency(primaryCelsius) || !fan.isMaximumKnown", "isEmergency(primaryCelsius)"),
    ("protection drives at the minimum", MONITORING + "PollDecision.cpp", "NumberText::exactWhole(fan.maxRPM)", "NumberText::exactWhole(fan.minRPM)"),
    ("fans without a temperature are not suspended", MONITORING + "PollDecision.cpp", "request.suspended = true;", ""),
    ("without a temperature manual control is allowed", MONITORING + "PollDecision.cpp", "!decision.primaryCelsius || isEmergency", "isEmergency"),
    ("a change by 100 rpm waits", MONITORING + "PollDecision.cpp", "< smallestPromptChangeRPM", "<= smallestPromptChangeRPM"),
    ("a speed is sent again after ten seconds sharp", MONITORING + "PollDecision.cpp", "now - manualBefore->at <= resendInterval", "now - manualBefore->at < resendInterval"),
    ("a refused hand-back is not repeated", MONITORING + "PollDecision.cpp", "return manualBefore || isRepeated ?", "return manualBefore ?"),
    ("a refused speed counts as requested", MONITORING + "PollDecision.cpp", "entry->second.succeeded ? entry->second.desired.manualRPM", "true ? entry->second.desired.manualRPM"),
    ("a fan that is no longer read keeps its speed in protection", MONITORING + "PollDecision.cpp", "decision.forbidsManualControl || decision.boosting ||", "decision.forbidsManualControl ||"),
    ("a fan that was read is handed back as missing", MONITORING + "PollDecision.cpp", "!read.contains(index) && ", ""),
    ("a constant speed ignores the minimum", MONITORING + "FanSetting.cpp", "wanted > minRPM ? wanted : minRPM", "wanted"),
    ("a minimum above the maximum wins", MONITORING + "FanSetting.cpp", "atLeastMinimum < maxRPM ? atLeastMinimum : maxRPM", "atLeastMinimum < maxRPM || minRPM > maxRPM ? atLeastMinimum : maxRPM"),
    ("a constant speed that is not a number is sent", MONITORING + "FanSetting.cpp", "std::isnan(wanted) || ", ""),
    ("a curve of no width divides by zero", MONITORING + "FanSetting.cpp", "if (span < 1) {", "if (span < 0) {"),
    ("a curve goes on above its maximum", MONITORING + "FanSetting.cpp", "} else if (fraction > 1) {", "} else if (fraction > 2) {"),
    ("a curve goes on below its start", MONITORING + "FanSetting.cpp", "if (fraction <= 0) {", "if (fraction <= -1) {"),
    ("a curve's speed is not rounded to 50", MONITORING + "FanSetting.cpp", "stepRPM = 50", "stepRPM = 1"),
    ("the sensor of a curve is ignored", MONITORING + "FanSetting.cpp", "if (!sensorKey.empty()) {", "if (false) {"),
    ("settings for a negative index are read", MONITORING + "FanSettingsJSON.cpp", "!isNumber || index < 0 ||", "!isNumber ||"),
    ("an index with a leading zero is read", MONITORING + "FanSettingsJSON.cpp", " || QString::number(index) != text", ""),
    ("an unlimited text is read", MONITORING + "FanSettingsJSON.cpp", "json.size() > largestText", "false"),
    ("start and maximum are exchanged when read", MONITORING + "FanSettingsJSON.cpp", "startTemp.toDouble(),\n                      maxTemp.toDouble()", "maxTemp.toDouble(),\n                      startTemp.toDouble()"),
    ("a setting that is not finite is stored", MONITORING + "FanSettingsJSON.cpp", "!std::isfinite(setting.constantRPM) || ", ""),
    ("the average counts one fan too many", MONITORING + "FanSummary.cpp", "static_cast<double>(fans.size())", "static_cast<double>(fans.size() + 1)"),
    ("left and right are exchanged", MONITORING + "FanSummary.cpp", "fan.id == 0 ?", "fan.id == 1 ?"),
    ("fans are numbered from 0", MONITORING + "FanSummary.cpp", "qint64{fan.id} + 1", "qint64{fan.id}"),
    ("the status item rounds the temperature", MONITORING + "FanSummary.cpp", "NumberFormat::truncated(*primaryCelsius)", "NumberFormat::rounded(*primaryCelsius)"),
    ("the coolest processor sensor is the main one", MONITORING + "SensorSummary.cpp", "reading.celsius > *result", "reading.celsius < *result"),
    ("five sensors are featured", MONITORING + "SensorSummary.cpp", "featuredCount = 6", "featuredCount = 5"),
    ("the coolest sensors fill up the featured ones", MONITORING + "SensorSummary.cpp", "std::ranges::greater()", "std::ranges::less()"),
    ("the hot threshold is exclusive", MONITORING + "SensorSummary.cpp", "*primaryCelsius >= hotThreshold", "*primaryCelsius > hotThreshold"),
    ("the warm threshold is exclusive", MONITORING + "SensorSummary.cpp", "*primaryCelsius >= warmThreshold ?", "*primaryCelsius > warmThreshold ?"),
    ("lowest and highest of a sensor are exchanged", MONITORING + "SensorRecord.cpp", "running.lowest = std::min(running.lowest, celsius);\n        running.highest = std::max(running.highest, celsius);", "running.lowest = std::max(running.lowest, celsius);\n        running.highest = std::min(running.highest, celsius);"),
    ("a sensor's record survives a pause", MONITORING + "SensorRecord.cpp", "now - lastAdded_ > window || ", ""),
    ("a sensor's record survives a clock set back", MONITORING + "SensorRecord.cpp", " || now < lastAdded_", ""),
    ("a reading that is not finite enters the record", MONITORING + "SensorRecord.cpp", "if (!std::isfinite(sensor.celsius)) {", "if (false) {"),
    ("the record does not forget", MONITORING + "SensorRecord.cpp", "(*sensor)[static_cast<std::size_t>(passed % spans)] = {};", ""),
    ("the presets silent and game are exchanged", MONITORING + "Preset.cpp", "return curve(65, 95);", "return curve(40, 80);"),
    ("a preset's name must be written as shown", MONITORING + "Preset.cpp", "wanted, Qt::CaseInsensitive", "wanted, Qt::CaseSensitive"),
    ("looking up a preset changes the language", MONITORING + "Preset.cpp", "    Localizer::setLanguage(before);\n", ""),
    ("the warm and the hot word are exchanged", MONITORING + "MonitorStates.cpp", 'case HealthStatus::warm:\n        return localized(u"Le Mac est chaud");', 'case HealthStatus::warm:\n        return localized(u"Surchauffe");'),
    # The poller.
    ("fans are driven while another session is in front", MONITORING + "Poller.cpp", "!request.isInFront || request.isGoingToSleep", "request.isGoingToSleep"),
    ("fans are driven on the way to sleep", MONITORING + "Poller.cpp", "!request.isInFront || request.isGoingToSleep", "!request.isInFront"),
    ("fans that were manual at the start are not ours", MONITORING + "Poller.cpp", "fansWithKnownMode_.insert(index).second && isManual", "fansWithKnownMode_.insert(index).second && false"),
    ("a reset does not stop a poll", MONITORING + "Poller.cpp", "services_.resets && *services_.resets != request.resets", "false"),
    ("speeds are sent while the helper is being removed", MONITORING + "Poller.cpp", "request.suspendsUserSpeeds && !decision.boosting", "false"),
    ("protection waits while the helper is being removed", MONITORING + "Poller.cpp", "request.suspendsUserSpeeds && !decision.boosting", "request.suspendsUserSpeeds"),
    ("a refusal is no problem", MONITORING + "Poller.cpp", "problem = PollProblem::refused;", ""),
    ("the guard is told of a fan too late", MONITORING + "Poller.cpp", "        record(sent_, request, services_.now(), false);\n        tellCustody();\n    }", "    }"),
    ("a hand-back is believed without a look", MONITORING + "Poller.cpp", "(request.desired.manualRPM || hasGoneBack(request.index))", "true"),
    ("an unfinished poll is published", MONITORING + "Poller.cpp", "    if (*services_.stop) {\n        return std::nullopt; // the readings", "    if (false) {\n        return std::nullopt; // the readings"),
    ("protection is not reported", MONITORING + "Poller.cpp", "result.isProtecting = decision.boosting && request.isInFront;", ""),
    # Who has the fans.
    ("a fan at its chosen speed is sent again at the end", MONITORING + "FanCustody.cpp", "rpm && !isAtChosenSpeed(index)", "rpm"),
    ("the safety rule does not hold at the end", MONITORING + "FanCustody.cpp", " || isHeldBySafetyRule_) {", ") {"),
    ("every change is announced, even the same", MONITORING + "FanCustody.cpp", "if (announced_ == current) {", "if (false) {"),
    ("a new intent is not announced", MONITORING + "FanCustody.cpp", "    announced_.reset();\n    announceIfChanged();", "    announced_.reset();"),
    ("fans of another session are handed back", MONITORING + "FanCustody.cpp", "if (!intent_.isInFront && owned.empty()) {", "if (false) {"),
    # The monitor.
    ("the history keeps one value too many", MONITORING + "MonitorPolling.cpp", "history.size() > historyLimit", "history.size() > historyLimit + 1"),
    ("the times of the history grow for ever", MONITORING + "MonitorPolling.cpp", "            historyTimes.removeFirst();\n", ""),
    ("an alert comes with every poll", MONITORING + "MonitorPolling.cpp", "lastAlert && now - *lastAlert < alertInterval", "false"),
    ("an alert comes only above its threshold", MONITORING + "MonitorPolling.cpp", "*celsius >= saved.alertThreshold", "*celsius > saved.alertThreshold"),
    ("an alert comes although it is switched off", MONITORING + "MonitorPolling.cpp", "!saved.alertsEnabled || !celsius ||", "!celsius ||"),
    ("a change of the history is not signalled", MONITORING + "MonitorPolling.cpp", "Q_EMIT monitor.historyChanged();", ""),
    ("the missing controller is not signalled", MONITORING + "MonitorPolling.cpp", "assign(smcAvailable, available, &Monitor::smcAvailableChanged);", "smcAvailable = available;"),
    ("the requested speed is not shown", MONITORING + "MonitorPolling.cpp", "state.requestedRPM = static_cast<double>(speed->second);", ""),
    ("two polls wait at once", MONITORING + "MonitorPolling.cpp", "return !std::exchange(isWaiting_, true);", "return true;"),
    ("an answer about a former helper counts", MONITORING + "MonitorPolling.cpp", "if (era == helperGeneration) {", "if (true) {"),
    ("a problem of a poll is not shown", MONITORING + "MonitorPolling.cpp", "assign(controlError, std::optional(text(*result.problem)), &Monitor::controlErrorChanged);", ""),
    ("the alert threshold is not used by polls before the next change", MONITORING + "MonitorPreferences.cpp", "d.remember<&SavedPreferences::alertThreshold>(celsius, &Monitor::alertThresholdChanged);\n    d.publishHandBackState();", "d.remember<&SavedPreferences::alertThreshold>(celsius, &Monitor::alertThresholdChanged);"),
    ("the hot threshold is stored as the warm one", MONITORING + "MonitorPreferences.cpp", "d.remember<&SavedPreferences::hotThreshold>", "d.remember<&SavedPreferences::warmThreshold>"),
    ("a preset takes an unknown maximum", MONITORING + "MonitorPreferences.cpp", "fan.isMaximumKnown ? fan.maxRPM : beyondEveryMaximumRPM", "fan.maxRPM"),
    ("a fan's setting keeps the preset", MONITORING + "MonitorPreferences.cpp", "settings[index] = setting; }, std::nullopt", "settings[index] = setting; }, d.saved.activePreset"),
    ("polls do not see a new setting", MONITORING + "MonitorPreferences.cpp", "settingsSnapshot = std::make_shared<const FanSettings>(saved.settings);", ""),
    ("an error keeps its language", MONITORING + "MonitorPreferences.cpp", "if (changes && d.controlError) {", "if (false) {"),
    ("a change of the introduction is not stored", MONITORING + "MonitorPreferences.cpp", "d.remember<&SavedPreferences::didOnboard>(done, &Monitor::didOnboardChanged);", "d.assign(d.saved.didOnboard, done, &Monitor::didOnboardChanged);"),
    ("thresholds are not written back", MONITORING + "SavedPreferences.cpp", "preference.isWrittenBack && store", "false && store"),
    ("no preset stays stored", MONITORING + "SavedPreferences.cpp", "        store.remove(keyOf(preference));", ""),
    ("a refused login item leaves the switch on", MONITORING + "MonitorLifecycle.cpp", "    Q_EMIT launchAtLoginChanged(); // after", "    // after"),
    ("a failed activation is silent", MONITORING + "MonitorLifecycle.cpp", "installed ? std::nullopt\n                               : std::optional(TextKey(u\"L'activation a été annulée ou a échoué.\"))", "std::optional<TextKey>()"),
    ("a second installation begins during the first", MONITORING + "MonitorLifecycle.cpp", "if (d.isInstalling) {", "if (false) {"),
    ("waking up does not poll", MONITORING + "MonitorLifecycle.cpp", "if (std::exchange(d.isGoingToSleep, false)) {\n        d.publishHandBackState();\n        tick();", "if (std::exchange(d.isGoingToSleep, false)) {\n        d.publishHandBackState();"),
    ("leaving the front does not poll", MONITORING + "Monitor.cpp", "        if (!isInFront) {\n            tick();\n        }", ""),
    ("timely scheduling is wanted always", MONITORING + "Monitor.cpp", "entry.second.mode != FanModeKind::automatic;\n        });", "entry.second.mode != FanModeKind::automatic;\n        }) || true;"),
    ("a second monitor becomes the shared one", MONITORING + "Monitor.cpp", "if (sharedMonitor == nullptr) {", "if (true) {"),
    # Processes and updates.
    ("a process that took over a number is quit", PROCESSES + "AppQuitting.cpp", " && services.startOf(pid) == listed", ""),
    ("Fenwhirl quits itself", PROCESSES + "AppQuitting.cpp", " && pid != services.ownPid", ""),
    ("whoever shall be forced is asked", PROCESSES + "AppQuitting.cpp", "force ? SIGKILL : SIGTERM", "SIGTERM"),
    ("1 % is not shown", PROCESSES + "ProcessListing.cpp", "app.cpu >= shownFromPercent", "app.cpu > shownFromPercent"),
    ("the lightest processes come first", PROCESSES + "ProcessListing.cpp", "return a.cpu > b.cpu;", "return a.cpu < b.cpu;"),
    ("an infinite load is shown", PROCESSES + "ProcessListing.cpp", "std::isfinite(app.cpu) && ", ""),
    ("a share is not divided by the processors", PROCESSES + "ProcessListing.cpp", "process->percentOfCore / processors", "process->percentOfCore"),
    ("memory is in KiB", PROCESSES + "ProcessListing.cpp", "process->residentKiB / kibPerMebi", "process->residentKiB"),
    ("macOS's own applications can be quit", PROCESSES + "ProcessListing.cpp", "!entry.id.startsWith(QStringLiteral(\"/System/\")) &&\n                        ", ""),
    ("2147483648 is a process's number", PROCESSES + "ProcessListing.cpp", "if (!negative && value == limit) {", "if (false) {"),
    ("a decimal comma is no number", PROCESSES + "ProcessListing.cpp", "share.contains(u',') ? parseNumber(share.toString().replace(u',', u'.')) : ", ""),
    ("the same applications are signalled again", PROCESSES + "ProcessMonitor.cpp", "if (sample_.apps != before.apps) {", "if (true) {"),
    ("a sample begins during another", PROCESSES + "ProcessMonitor.cpp", "if (busy_) {", "if (false) {"),
    ("a quit is not followed by a look", PROCESSES + "ProcessMonitor.cpp", "QTimer::singleShot(services_.delayAfterQuit, this, &ProcessMonitor::refresh);", ""),
    ("the same version is newer", UPDATES + "UpdateVersion.cpp", "bool isNewer(QStringView a, QStringView b) {", "bool isNewer(QStringView a, QStringView b) {\n    if (a == b) { return true; }"),
    ("a page of another host is opened", UPDATES + "UpdateDocument.cpp", "host != makersHost && !host.endsWith(u'.' + makersHost)", "false"),
    ("a host that ends like ours is ours", UPDATES + "UpdateDocument.cpp", "!host.endsWith(u'.' + makersHost)", "!host.endsWith(makersHost)"),
    ("a page may be unencrypted", UPDATES + "UpdateDocument.cpp", '!page.isValid() || page.scheme() != QStringLiteral("https")', "!page.isValid()"),
    ("user information may come before the host", UPDATES + "UpdateDocument.cpp", "page.authority(QUrl::FullyEncoded).contains(u'@')", "false"),
    ("name and version of an update are exchanged", UPDATES + "UpdateTexts.cpp", 'body.replace(QStringLiteral("%1"), version);\n    body.replace(QStringLiteral("%2"), name);', 'body.replace(QStringLiteral("%1"), name);\n    body.replace(QStringLiteral("%2"), version);'),
    ("an update is looked for at every start", UPDATES + "UpdateChecker.cpp", "now - lastCheck < secondsPerDay || ", ""),
    ("an update is told of again and again", UPDATES + "UpdateChecker.cpp", "services_.preferences->setText(notifiedVersionKey(), document.version);", ""),
    # Languages.
    ("a language's tag must be in lower case", LANGUAGE + "LanguageResolution.cpp", "tag.toLower()", "tag"),
    ("Serbian is always Cyrillic", LANGUAGE + "LanguageResolution.cpp", "return latinSerbian ? AppLanguage::srLatn : language;", "return language;"),
    ("rounded numbers are cut off", LANGUAGE + "NumberFormat.cpp", "saturated(std::round(value))", "saturated(std::trunc(value))"),
    ("the largest number overflows", LANGUAGE + "NumberFormat.cpp", "whole >= limit", "whole > limit"),
    ("lowest and highest of a range are exchanged", LANGUAGE + "NumberFormat.cpp", "return lowest + range.sliced(begin, range.indexOf(second) - begin) + highest;", "return highest + range.sliced(begin, range.indexOf(second) - begin) + lowest;"),
    ("a text is one character too long", LANGUAGE + "DisplayText.cpp", "? limit : limit - 1", "? limit : limit"),
    ("control characters are shown", LANGUAGE + "DisplayText.cpp", "case QChar::Other_Control:", ""),
    ("lj stays two letters", LANGUAGE + "Cyrillic.cpp", "first == u'l' ? u'љ' :", "first == u'l' ? u'\\0' :"),
    ("Cyrillic loses its capitals", LANGUAGE + "Cyrillic.cpp", "latin.upperCase ? QChar(cyrillic).toUpper() : QChar(cyrillic)", "QChar(cyrillic)"),
    ("the second value fills the first place", LANGUAGE + "Localizer.cpp", "done = at + placeholder.size();", "done = at;"),
    # What the views offer to QML.
    ("the warm threshold does not reach the verdict", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::warmThresholdChanged, this, &MachineView::refreshStatus);", ""),
    ("the hot threshold does not reach the verdict", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::hotThresholdChanged, this, &MachineView::refreshStatus);", ""),
    ("a missing controller does not reach the window", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::smcAvailableChanged, this, &MachineView::smcAvailableChanged);", ""),
    ("the temperature does not reach the verdict", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::primaryCelsiusChanged, this, &MachineView::refreshStatus);", ""),
    ("the history does not reach the chart", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::historyChanged, this, &MachineView::historyChanged);", ""),
    ("the alert threshold does not reach the chart", VIEWS + "MachineView.cpp", "{&Monitor::alertsEnabledChanged, &Monitor::alertThresholdChanged}) {\n        connect(&monitor_, signal, this, &MachineView::alertLineChanged", "{&Monitor::alertsEnabledChanged}) {\n        connect(&monitor_, signal, this, &MachineView::alertLineChanged"),
    ("switching alerts off leaves their line in the chart", VIEWS + "MachineView.cpp", "monitor_.alertsEnabled() ? monitor_.alertThreshold() : std::numeric_limits<double>::quiet_NaN()", "monitor_.alertThreshold()"),
    ("fans do not see that protection began", VIEWS + "MachineView.cpp", "&Monitor::primaryCelsiusChanged, &Monitor::isProtectingChanged,", "&Monitor::primaryCelsiusChanged,"),
    ("a change of settings does not reach the fans", VIEWS + "MachineView.cpp", "connect(&monitor_, &Monitor::settingsChanged, this, [this] { fans_.refreshSettings(); });", ""),
    ("lowest and highest of the history are exchanged", VIEWS + "MachineView.cpp", "NumberFormat::temperatureText(*lowest),\n                                   NumberFormat::temperatureText(*highest)", "NumberFormat::temperatureText(*highest),\n                                   NumberFormat::temperatureText(*lowest)"),
    ("the panel shows four sensors", VIEWS + "MachineView.cpp", "panelSensorCount = 3", "panelSensorCount = 4"),
    ("a new sensor does not change the number of sensors", VIEWS + "MachineView.cpp", "if (sensors_.count() != before) {", "if (false) {"),
    ("a nameless computer has an empty name", VIEWS + "MachineView.cpp", 'computerName_.isEmpty() ? localized(u"Ce Mac") : computerName_', "computerName_"),
    ("a summary leaves out the first fan", VIEWS + "MachineView.cpp", "for (int row = 0; row < fans_.count(); ++row) {\n        phrases", "for (int row = 1; row < fans_.count(); ++row) {\n        phrases"),
    ("the times of the history are in seconds", VIEWS + "MachineView.cpp", "std::chrono::duration<double, std::milli>", "std::chrono::duration<double>"),
    ("a window that opens shows an old verdict", VIEWS + "MachineView.cpp", "    shownStatus_ = monitor_.status();\n    Q_EMIT statusChanged();", ""),
    ("an infinite maximum reaches the slider", VIEWS + "FanRow.cpp", "return std::isfinite(fan_.maxRPM) ? std::max(fan_.maxRPM, lowest + 1) : lowest + 1;", "return std::max(fan_.maxRPM, lowest + 1);"),
    ("an infinite minimum reaches the slider", VIEWS + "FanRow.cpp", "return std::isfinite(fan_.minRPM) ? fan_.minRPM : 0;", "return fan_.minRPM;"),
    ("an infinite speed reaches the panel's slider", VIEWS + "FanRow.cpp", "return std::isfinite(rpm) ? rpm : lowestRPM();", "return rpm;"),
    ("an infinite fraction reaches the gauge", VIEWS + "FanRow.cpp", "return std::isfinite(fraction) ? fraction : 0;", "return fraction;"),
    ("the slider of a fan without a range has no length", VIEWS + "FanRow.cpp", "std::max(fan_.maxRPM, lowest + 1)", "fan_.maxRPM"),
    ("lowest and highest speed are exchanged", VIEWS + "FanRow.cpp", "return NumberFormat::rpmText(fan_.minRPM);", "return NumberFormat::rpmText(fan_.maxRPM);"),
    ("a new range does not reach the card", VIEWS + "FanRow.cpp", "        Q_EMIT rangeChanged();\n        Q_EMIT speedChanged(); //", "        Q_EMIT speedChanged(); //"),
    ("the panel's slider moves when a constant speed fluctuates", VIEWS + "FanRow.cpp", "if (setting_.mode != FanModeKind::constant) {\n            Q_EMIT", "if (true) {\n            Q_EMIT"),
    ("the panel's slider does not follow the speed", VIEWS + "FanRow.cpp", "if (setting_.mode != FanModeKind::constant) {\n            Q_EMIT", "if (false) {\n            Q_EMIT"),
    ("a new request does not reach the gauge", VIEWS + "FanRow.cpp", "fan.requestedRPM != previous.requestedRPM || ", ""),
    ("the gauge's mark does not follow the range", VIEWS + "FanRow.cpp", "fan.requestedRPM != previous.requestedRPM || fan.minRPM != previous.minRPM ||\n        fan.maxRPM != previous.maxRPM", "fan.requestedRPM != previous.requestedRPM"),
    ("the alert of another sensor limits a curve", VIEWS + "FanRow.cpp", "        if (monitor_.alertsEnabled()) {", "        if (true) {"),
    ("moving the panel's slider keeps the mode", VIEWS + "FanRow.cpp", "    setting.mode = FanModeKind::constant;\n    setting.constantRPM = rpm;", "    setting.constantRPM = rpm;"),
    ("start and maximum of a curve are exchanged", VIEWS + "FanRow.cpp", "setting.startTemp = celsius;", "setting.maxTemp = celsius;"),
    ("a choice behind the last sensor is taken", VIEWS + "FanRow.cpp", "choice < 0 || choice >= choices_.names().size()", "choice < 0 || choice > choices_.names().size()"),
    ("the warm threshold does not push the hot one", VIEWS + "HealthThresholds.cpp", "thresholds.hot < warm + distance", "false"),
    ("the hot threshold does not push the warm one", VIEWS + "HealthThresholds.cpp", "thresholds.warm > hot - distance", "false"),
    ("the hot threshold is pushed beyond its range", VIEWS + "HealthThresholds.cpp", "std::min(warm + distance, highestHot)", "warm + distance"),
    ("the warm threshold is pushed below its range", VIEWS + "HealthThresholds.cpp", "std::max(hot - distance, lowestWarm)", "hot - distance"),
    ("the hot threshold does not follow the warm one", VIEWS + "PreferencesView.cpp", "        monitor_.setHotThreshold(hot);\n    }\n}\n\nvoid PreferencesView::setHot", "    }\n}\n\nvoid PreferencesView::setHot"),
    ("warm and hot texts are exchanged", VIEWS + "PreferencesView.cpp", "Mac chaud à partir de %@ °C\", {NumberFormat::degreesText(monitor_.warmThreshold())", "Mac chaud à partir de %@ °C\", {NumberFormat::degreesText(monitor_.hotThreshold())"),
    ("a new alert threshold does not reach its page", VIEWS + "PreferencesView.cpp", "    connect(&monitor_, &Monitor::alertThresholdChanged, this, &PreferencesView::alertsChanged);\n", ""),
    ("a new hot threshold does not reach its slider", VIEWS + "PreferencesView.cpp", "    connect(&monitor_, &Monitor::hotThresholdChanged, this, &PreferencesView::thresholdsChanged);\n", ""),
    ("the login item does not reach its switch", VIEWS + "PreferencesView.cpp", "    connect(&monitor_, &Monitor::launchAtLoginChanged, this, &PreferencesView::launchAtLoginChanged);\n", ""),
    ("the theme does not reach its control", VIEWS + "PreferencesView.cpp", "    connect(&monitor_, &Monitor::themeChanged, this, &PreferencesView::themeChanged);\n", ""),
    ("the alert is not tested", VIEWS + "PreferencesView.cpp", 'notify_(QStringLiteral("Fenwhirl"), localized(u"Ceci est une alerte de test."));', ""),
    ("a theme behind the last is chosen", VIEWS + "PreferencesView.cpp", "theme < static_cast<int>(allAppThemes.size())", "theme <= static_cast<int>(allAppThemes.size())"),
    ("an outdated helper does not reach the banners", VIEWS + "ControlView.cpp", "    connect(&monitor_, &Monitor::helperOutdatedChanged, this, &ControlView::changed);\n", ""),
    ("an error does not reach the banners", VIEWS + "ControlView.cpp", "    connect(&monitor_, &Monitor::controlErrorChanged, this, &ControlView::changed);\n", ""),
    ("an installation in progress is not shown", VIEWS + "ControlView.cpp", "    connect(&monitor_, &Monitor::isInstallingChanged, this, &ControlView::changed);\n", ""),
    ("share and memory of an application are exchanged", VIEWS + "AppList.cpp", "app.iconSource, app.shareText, app.memoryText", "app.iconSource, app.memoryText, app.shareText"),
    ("an application in question keeps its switch on", VIEWS + "AppList.cpp", ".on = !isAskedAbout,", ".on = true,"),
    ("applications are sampled behind other pages", VIEWS + "AppsView.cpp", "if (awake && pageShown_) {", "if (awake) {"),
    ("the question stays when its page goes", VIEWS + "AppsView.cpp", "    if (!shown) {\n        cancel();\n    }", ""),
    ("an answer is given twice", VIEWS + "AppsView.cpp", "*std::exchange(askedAbout_, std::nullopt);\n    processes_", "*askedAbout_;\n    processes_"),
    ("whoever shall quit is forced", VIEWS + "AppsView.cpp", "processes_.quit(app, force);", "processes_.quit(app, !force);"),
    ("fans are moved without their new reading", VIEWS + "FanList.cpp", "        endMoveRows();\n        rows_.at(row)->setFan(fan);", "        endMoveRows();"),
    ("a fan that comes does not rename the others", VIEWS + "FanList.cpp", "            endInsertRows();\n            membersChanged = true;", "            endInsertRows();"),
    ("the number of fans is not signalled", VIEWS + "FanList.cpp", "        Q_EMIT countChanged();", ""),
    ("rows with one identity are confused", VIEWS + "RowList.cpp", 'row.identity += QStringLiteral(" #%1").arg(before);', ""),
    ("a row that moves keeps its values", VIEWS + "RowList.cpp", "        update(place, row.values);", ""),
    ("a changed value is signalled under another role", VIEWS + "RowList.cpp", "roles.append(Qt::UserRole + place);", "roles.append(Qt::UserRole + place + 1);"),
    ("the first of several missing rows stays", VIEWS + "RowList.cpp", "while (first > 0 &&", "while (first > 1 &&"),
    ("a slice has one row too many", VIEWS + "RowSlice.cpp", "row - first_ < rows_", "row - first_ <= rows_"),
    ("a slice does not notice new rows", VIEWS + "RowSlice.cpp", "        connect(model, &QAbstractItemModel::rowsInserted, this, &RowSlice::filterAnew);\n", ""),
    ("a slice does not notice rows that went", VIEWS + "RowSlice.cpp", "        connect(model, &QAbstractItemModel::rowsRemoved, this, &RowSlice::filterAnew);\n", ""),
    ("an unknown sensor is the first choice", VIEWS + "SensorChoices.cpp", "position < 0 ? -1 :", "position < 0 ? 1 :"),
    ("choices are off by one", VIEWS + "SensorChoices.cpp", "keys_.at(choice - 1)", "keys_.at(choice % keys_.size())"),
    ("a peak 2 °C above is not marked", VIEWS + "SensorList.cpp", ">= leastPeakDistance", "> leastPeakDistance"),
    ("sensors are sorted backwards", VIEWS + "SensorList.cpp", "return left.name < right.name;", "return left.name > right.name;"),
    ("a sensor's bar is red where its peak is", VIEWS + "SensorList.cpp", ".hot = sensorBarIsHot(sensor.celsius)", ".hot = sensorBarIsHot(sensor.highestCelsius)"),
    ("the range of a sensor is turned round", VIEWS + "SensorList.cpp", "NumberFormat::degreesText(sensor.lowestCelsius),\n                                         NumberFormat::temperatureText(sensor.highestCelsius)", "NumberFormat::degreesText(sensor.highestCelsius),\n                                         NumberFormat::temperatureText(sensor.lowestCelsius)"),
    ("another preset does not move the mark", VIEWS + "PresetList.cpp", "    connect(&monitor, &Monitor::activePresetChanged, this, &PresetList::refreshActive);\n", ""),
    ("title and detail of a preset are exchanged", VIEWS + "PresetList.cpp", "    case titleRole:\n        return title(preset);", "    case titleRole:\n        return detail(preset);"),
    ("the preset behind the last is applied", VIEWS + "PresetList.cpp", "index >= 0 && index < rowCount()", "index >= 0 && index <= rowCount()"),
    ("the last preset keeps its language", VIEWS + "PresetList.cpp", "Q_EMIT dataChanged(index(0), index(rowCount() - 1), {titleRole, detailRole});", "Q_EMIT dataChanged(index(0), index(rowCount() - 2), {titleRole, detailRole});"),
    ("pages keep their language", VIEWS + "PageList.cpp", "Q_EMIT dataChanged(index(0), index(rowCount() - 1), {titleRole});", ""),
    ("another page does not move the mark", VIEWS + "PageList.cpp", "    connect(&monitor, &Monitor::selectedPageChanged, this, &PageList::selectedChanged);\n", ""),
    ("two pages exchange their icons", VIEWS + "PageLabels.cpp", '{Page::alerts, "bell"}', '{Page::alerts, "gearshape"}'),
    ("a second report begins during the first", VIEWS + "ReportView.cpp", "if (std::exchange(busy_, true)) {", "if (std::exchange(busy_, true) && false) {"),
    ("a report is never ready", VIEWS + "ReportView.cpp", "self->busy_ = false;", ""),
    ("a report without a place is written", VIEWS + "ReportView.cpp", "if (path.isEmpty()) {", "if (false) {"),
    ("a report that was not written is shown", VIEWS + "ReportView.cpp", " && file.commit()) {", ") {"),
    ("a report that was cut off is shown", VIEWS + "ReportView.cpp", "file.flush() && ", ""),
    ("a report is always without the fan test", VIEWS + "ReportView.cpp", "makeDiagnosticReport(withFanTest_,", "makeDiagnosticReport(false,"),
    ("the settings keep their language", VIEWS + "ViewModels.cpp", "    preferences_.retranslate();\n", ""),
    ("the banners sleep in an open window", VIEWS + "ViewModels.cpp", "    control_.setAwake(awake);\n", ""),
    ("a window that wakes up shows what was", VIEWS + "LiveView.cpp", "        connectModels();\n        refresh();", "        connectModels();"),
    ("a hidden window goes on working", VIEWS + "LiveView.cpp", "        disconnectModels();", ""),
    # Pages.
    ("the dashboard does not tell of a missing controller", VIEWS + "DashboardPage.qml", 'root.machine.smcAvailable ? "" : qsTr', 'true ? "" : qsTr'),
    ("a Mac with fans is told that it has none", VIEWS + "DashboardPage.qml", "visible: root.machine.fans.count === 0", "visible: root.machine.fans.count !== 0"),
    ("the featured sensors are the panel's", VIEWS + "DashboardPage.qml", "sensors: root.machine.featured", "sensors: root.machine.panelSensors"),
    ("caption and number of the temperature are exchanged", VIEWS + "TemperatureCard.qml", "text: root.machine.temperatureNumber", "text: root.machine.statusDetail"),
    ("the status dot is always good", VIEWS + "TemperatureCard.qml", "good: root.machine.healthy", "good: true"),
    ("the chart has no alert line", VIEWS + "TemperatureCard.qml", "            threshold: root.machine.alertLine\n", ""),
    ("begin and end of the chart are exchanged", VIEWS + "TemperatureCard.qml", 'startCaption: qsTr("il y a 10 min")', 'startCaption: qsTr("maintenant")'),
    ("the focused temperature does not sum up", VIEWS + "TemperatureCard.qml", "spoken = root.machine.summary()", "spoken = root.machine.temperatureText"),
    ("a fan's gauge shows its request as its speed", VIEWS + "FanCard.qml", "fraction: root.fan.speedFraction", "fraction: root.fan.requestedFraction"),
    ("a fan's gauge has no mark", VIEWS + "FanCard.qml", "aim: root.fan.requestedFraction", "aim: NaN"),
    ("the modes of a fan are exchanged", VIEWS + "FanCard.qml", "if (mode === 1)", "if (mode === 2)"),
    ("choosing a fan's mode has no effect", VIEWS + "FanCard.qml", "onActivated: index => root.fan.mode = index", "onActivated: index => {}"),
    ("a fan's card has no range", VIEWS + "FanCard.qml", "content: root.fan.rangeText", 'content: ""'),
    ("the two steppers of a curve set the same", VIEWS + "FanCurveControls.qml", "onModified: value => root.fan.maxTemp = value", "onModified: value => root.fan.startTemp = value"),
    ("a curve starts up to 100 °C", VIEWS + "FanCurveControls.qml", "            to: 80", "            to: 100"),
    ("a curve reaches its maximum from 40 °C", VIEWS + "FanCurveControls.qml", "from: 50", "from: 40"),
    ("a curve does not show the present temperature", VIEWS + "FanCurveControls.qml", "        now: root.fan.drivingTemperature\n", ""),
    ("a curve does not show protection", VIEWS + "FanCurveControls.qml", "        protecting: root.fan.protecting\n", ""),
    ("a curve does not show where the alert cuts it", VIEWS + "FanCurveControls.qml", "        alertAt: root.fan.alertAt\n", ""),
    ("dragging the maximum of a curve has no effect", VIEWS + "FanCurveControls.qml", "        onMaxModified: value => root.fan.maxTemp = value\n", ""),
    ("choosing a curve's sensor has no effect", VIEWS + "FanCurveControls.qml", "onActivated: index => root.fan.sensorChoice = index", "onActivated: index => {}"),
    ("a constant speed has steps of 1", VIEWS + "FanSpeedControls.qml", "stepSize: 50", "stepSize: 1"),
    ("a constant speed ends at the lowest", VIEWS + "FanSpeedControls.qml", "to: fan.highestRPM", "to: fan.lowestRPM"),
    ("moving a constant speed has no effect", VIEWS + "FanSpeedControls.qml", "onMoved: value => fan.constantRPM = value", "onMoved: value => {}"),
    ("cards in one row differ in height", VIEWS + "FanGrid.qml", "height: root.rowHeight(index)", "height: implicitHeight"),
    ("alerts end at 95 °C", VIEWS + "AlertsPage.qml", "to: 100", "to: 95"),
    ("alerts have steps of 1 °C", VIEWS + "AlertsPage.qml", "stepSize: 5", "stepSize: 1"),
    ("the switch of the alerts has no effect", VIEWS + "AlertsPage.qml", "onToggled: on => root.preferences.alertsEnabled = on", "onToggled: on => {}"),
    ("the slider of the alerts has no effect", VIEWS + "AlertsPage.qml", "onMoved: value => root.preferences.alertThreshold = value", "onMoved: value => {}"),
    ("the test of the alert is not announced", VIEWS + "AlertsPage.qml", '                            Announcer.say(qsTr("Ceci est une alerte de test."))\n', ""),
    ("the two thresholds set the same", VIEWS + "ThresholdsCard.qml", "onMoved: value => root.preferences.hotThreshold = value", "onMoved: value => root.preferences.warmThreshold = value"),
    ("the warm threshold begins at 55 °C", VIEWS + "ThresholdsCard.qml", "from: 60", "from: 55"),
    ("the hot threshold ends at 100 °C", VIEWS + "ThresholdsCard.qml", "to: 105", "to: 100"),
    ("dark and light are exchanged in the settings", VIEWS + "AppearanceCard.qml", '[qsTr("Sombre"), qsTr("Clair"), qsTr("Automatique")]', '[qsTr("Clair"), qsTr("Sombre"), qsTr("Automatique")]'),
    ("choosing a theme has no effect", VIEWS + "AppearanceCard.qml", "onActivated: index => root.preferences.theme = index", "onActivated: index => {}"),
    ("choosing a language has no effect", VIEWS + "LanguagePicker.qml", "onActivated: index => preferences.language = index", "onActivated: index => {}"),
    ("the switch of the login item has no effect", VIEWS + "StartCard.qml", "onToggled: on => root.preferences.launchAtLogin = on", "onToggled: on => {}"),
    ("the switch of the login item has no name", VIEWS + "StartCard.qml", '            text: qsTr("Ouvrir Fenwhirl au démarrage du Mac")\n', ""),
    ("Settings offers what its own card offers", VIEWS + "SettingsPage.qml", "            showsOffers: false\n", ""),
    ("installing and removing are exchanged", VIEWS + "ControlCard.qml", "onClicked: root.control.uninstall()", "onClicked: root.control.install()"),
    ("an installed helper can be installed only", VIEWS + "ControlCard.qml", "visible: !root.control.installed", "visible: true"),
    ("handing back in Settings has no effect", VIEWS + "ControlCard.qml", "                    root.control.resetToAutomatic()\n", ""),
    ("handing back is not announced", VIEWS + "ControlCard.qml", '                    Announcer.say(qsTr("Ventilateurs") + ", " + qsTr("Auto"))\n', ""),
    ("an outdated helper is not mentioned in Settings", VIEWS + "ControlCard.qml", "visible: root.control.outdated", "visible: false"),
    ("the fan test cannot be chosen", VIEWS + "ReportCard.qml", "onToggled: on => root.report.withFanTest = on", "onToggled: on => {}"),
    ("a report is asked for while one is made", VIEWS + "ReportCard.qml", "available: !root.report.busy", "available: true"),
    ("an error stays", VIEWS + "Banners.qml", "onClosed: root.control.dismissError()", "onClosed: {}"),
    ("the offer to activate is not shown", VIEWS + "Banners.qml", "root.showsOffers && root.control.offersActivation", "false"),
    ("an update of the helper is not offered", VIEWS + "Banners.qml", "root.showsOffers && root.control.outdated", "false"),
    ("the banner to activate has no effect", VIEWS + "Banners.qml", "onActivated: root.control.install()", "onActivated: {}"),
    ("applying a preset has no effect", VIEWS + "PresetsPage.qml", "onApplied: root.models.presets.apply(index)", "onApplied: {}"),
    ("the active preset can be applied", VIEWS + "PresetCard.qml", "visible: !root.active", "visible: true"),
    ("the button of a preset does not say which", VIEWS + "PresetCard.qml", 'Accessible.name: text + ": " + root.title\n', ""),
    ("the preset on the dashboard is the first", VIEWS + "PresetMenu.qml", "currentIndex: presets.activeIndex", "currentIndex: 0"),
    ("sensors are read column by column from the wrong place", VIEWS + "SensorsPage.qml", "[Qt.Key_Right]: here + rows", "[Qt.Key_Right]: here + 1"),
    ("the last sensor cannot be reached by End", VIEWS + "SensorsPage.qml", "[Qt.Key_End]: root.count - 1", "[Qt.Key_End]: root.count"),
    ("a sensor that is out of sight is not scrolled to", VIEWS + "SensorsPage.qml", "            root.revealRow(index % rows)", "            ;"),
    ("a short list has several columns", VIEWS + "SensorsPage.qml", "Math.floor(root.count / 12)", "Math.floor(root.count / 2)"),
    ("quitting on the page forces", VIEWS + "AppsPage.qml", "onAccepted: root.view.quit()", "onAccepted: root.view.forceQuit()"),
    ("declining the question leaves it open", VIEWS + "AppsPage.qml", "onCancelled: root.view.cancel()", "onCancelled: {}"),
    ("applications are never sampled", VIEWS + "AppsPage.qml", "Component.onCompleted: view.pageShown = true", "Component.onCompleted: {}"),
    ("applications are sampled after their page", VIEWS + "AppsPage.qml", "Component.onDestruction: view.pageShown = false", ""),
    ("protected applications have a switch", VIEWS + "AppsPage.qml", 'canQuit ? "" : qsTr("Protégé")', '""'),
    ("an idle Mac shows an empty card", VIEWS + "AppsPage.qml", "visible: root.view.apps.count > 0", "visible: true"),
    # The windows.
    ("the sidebar's dot is always good", VIEWS + "Sidebar.qml", "good: root.machine.healthy", "good: true"),
    ("the sidebar cannot be walked downwards", VIEWS + "Sidebar.qml", "moveTo(focusedRow() + 1)", "moveTo(focusedRow())"),
    ("a click on a page has no effect", VIEWS + "Sidebar.qml", "                        root.pages.selectedIndex = index\n                        Announcer", "                        Announcer"),
    ("a page chosen by a click is not announced", VIEWS + "Sidebar.qml", "                        Announcer.say(title)\n", ""),
    ("Ctrl+1 opens the second page", VIEWS + "MainWindow.qml", 'sequences: ["Ctrl+" + (page.index + 1)]', 'sequences: ["Ctrl+" + page.index]'),
    ("Ctrl+comma opens the alerts", VIEWS + "MainWindow.qml", "selectedIndex = 6 //", "selectedIndex = 5 //"),
    ("Ctrl+W has no effect", VIEWS + "MainWindow.qml", "onActivated: root.close()", "onActivated: {}"),
    ("Ctrl+Q has no effect", VIEWS + "MainWindow.qml", "onActivated: root.models.quit()", "onActivated: {}"),
    ("F1 says nothing", VIEWS + "MainWindow.qml", "onActivated: Announcer.say(root.models.machine.summary())", "onActivated: {}"),
    ("pages can be changed behind the introduction", VIEWS + "MainWindow.qml", "                enabled: !onboarding.wanted\n", ""),
    ("Page Down scrolls upwards", VIEWS + "MainWindow.qml", "event.key === Qt.Key_PageDown ? 1 : -1", "event.key === Qt.Key_PageDown ? -1 : 1"),
    ("the introduction does not go", VIEWS + "MainWindow.qml", "overlay.shown = false", "overlay.shown = true"),
    ("the introduction does not come", VIEWS + "MainWindow.qml", "            if (onboarding.wanted)\n                onboarding.load()", ""),
    ("the introduction ends at its second step", VIEWS + "Onboarding.qml", "isLast: step === 2", "isLast: step === 1"),
    ("the introduction comes again", VIEWS + "Onboarding.qml", "preferences.finishOnboarding()", ""),
    ("the steps of the introduction are not announced", VIEWS + "Onboarding.qml", '            Announcer.say(title.content + ". " + message.content)\n', ""),
    ("two texts of the introduction are exchanged", VIEWS + "Onboarding.qml", 'qsTr("Pilote tes ventilateurs"), qsTr("Tout est prêt")', 'qsTr("Tout est prêt"), qsTr("Pilote tes ventilateurs")'),
    ("the introduction does not activate", VIEWS + "OnboardingAction.qml", "onClicked: root.control.install()", "onClicked: {}"),
    ("the introduction says activated when it is not", VIEWS + "OnboardingAction.qml", "visible: root.step === 1 && root.control.installed", "visible: root.step === 1"),
    ("the panel shows the featured sensors", VIEWS + "MenuPanel.qml", "model: root.models.machine.panelSensors", "model: root.models.machine.featured"),
    ("a preset in the panel has no effect", VIEWS + "MenuPanel.qml", "onActivated: index => root.models.presets.apply(index)", "onActivated: index => {}"),
    ("the panel marks no preset", VIEWS + "MenuPanel.qml", "currentIndex: root.models.presets.activeIndex", "currentIndex: -1"),
    ("Escape does not close the panel", VIEWS + "MenuPanel.qml", 'sequences: ["Escape", "Ctrl+W"]', 'sequences: ["Ctrl+W"]'),
    ("the panel is higher than the screen", VIEWS + "MenuPanel.qml", "Math.min(panel.contentHeight, maximumPanelHeight)", "panel.contentHeight"),
    ("the panel says nothing when it opens", VIEWS + "MenuPanel.qml", '            Announcer.say(title + root.models.machine.statusWord)', "            //"),
    ("the panel's fan button has no effect", VIEWS + "MenuFanRow.qml", "                root.fan.mode = 0\n", ""),
    ("the panel's slider has no effect", VIEWS + "MenuFanRow.qml", "onMoved: value => root.fan.panelRPM = value", "onMoved: value => {}"),
    ("the panel's slider ends at the lowest speed", VIEWS + "MenuFanRow.qml", "to: root.fan.highestRPM", "to: root.fan.lowestRPM"),
    ("the panel shows the wanted speed as the speed", VIEWS + "MenuFanRow.qml", "text: root.fan.speedText", "text: root.fan.panelSpeedText"),
    ("the panel's header has a good dot always", VIEWS + "MenuHeader.qml", "good: root.machine.healthy", "good: true"),
    ("the panel shows no error", VIEWS + "MenuHeader.qml", 'shown: root.control.error !== ""', "shown: false"),
    ("an error in the panel stays", VIEWS + "MenuError.qml", "onClicked: root.control.dismissError()", "onClicked: {}"),
    ("the panel's buttons are exchanged", VIEWS + "MenuActions.qml", "onClicked: root.models.openMain()", "onClicked: root.models.quit()"),
    ("the panel does not offer to activate", VIEWS + "MenuActions.qml", "visible: root.models.control.offersActivation", "visible: false"),
    ("name and temperature are exchanged in the panel", VIEWS + "MenuSensorRow.qml", 'Accessible.name: name + " " + temperature', 'Accessible.name: temperature + " " + name'),
    ("an error is announced like news", VIEWS + "Announcements.qml", "onErrorChanged: tell(error, true)", "onErrorChanged: tell(error)"),
    ("the verdict is announced when the window opens", VIEWS + "Announcements.qml", "if (lastHealth >= 0 && health !== lastHealth)", "if (health !== lastHealth)"),
    ("an inactive window announces", VIEWS + "Announcements.qml", "ready && Window.active", "ready"),
    ("a new verdict is not announced", VIEWS + "Announcements.qml", "            tell(models.machine.statusWord)", "            ;"),
    ("a report in progress is not announced", VIEWS + "Announcements.qml", '    onReportingChanged: tell(reporting ? qsTr("Création en cours…") : "")\n', ""),
    ("later and download of an update are exchanged", VIEWS + "AlertWindow.qml", "onClicked: root.accept()", "onClicked: root.close()"),
    ("Escape does not decline an update", VIEWS + "AlertWindow.qml", "        Keys.onEscapePressed: root.close()\n", ""),
    # Components.
    ("a value that is no number is the highest", COMPONENTS + "Stepping.cpp", "return value > from ? std::min(value, to) : from;", "return value > from ? std::min(value, to) : (value <= from ? from : to);"),
    ("a step beyond the end is taken", COMPONENTS + "Stepping.cpp", "value + stepSize <= to : value - stepSize >= from", "value + stepSize <= to : value - stepSize >= from - stepSize"),
    ("a step to the end off the grid is lost", COMPONENTS + "Stepping.cpp", "return moved || steps == 0 ? goal :", "return true ? goal :"),
    ("the nearest end is not reached", COMPONENTS + "Stepping.cpp", "return std::abs(inside - nearestEnd) < std::abs(inside - onGrid) ? nearestEnd : onGrid;", "return onGrid;"),
    ("a chart's range leaves no margin", COMPONENTS + "ChartScale.cpp", "smallest - marginDegrees", "smallest"),
    ("one value is a chart", COMPONENTS + "ChartScale.cpp", "if (usable < 2) {", "if (usable < 1) {"),
    ("an infinite value spoils the chart", COMPONENTS + "ChartScale.cpp", "if (!std::isfinite(value)) {", "if (std::isnan(value)) {"),
    ("a threshold at the chart's top is hidden", COMPONENTS + "ChartScale.cpp", "*threshold <= range.top", "*threshold < range.top"),
    ("a number covers the threshold's", COMPONENTS + "ChartScale.cpp", "away / degreesPerPoint >= numberDistance * textScale", "true"),
    ("a curve is protected from 92 °C on", COMPONENTS + "CurveShape.cpp", "shape.alertAt < handBackCelsius", "shape.alertAt <= handBackCelsius"),
    ("the point on the curve ignores protection", COMPONENTS + "CurveShape.cpp", "isProtecting || (alert && celsius >= *alert)", "alert && celsius >= *alert"),
    ("the point on the curve is shown at 92 °C", COMPONENTS + "CurveShape.cpp", "shape.isLimited && celsius >= handBackCelsius", "shape.isLimited && celsius > handBackCelsius"),
    ("numbers of the axis overlap", COMPONENTS + "CurveShape.cpp", "* pointsPerDegree < least", "* pointsPerDegree < least / 4"),
    ("a gauge that is no number is full", COMPONENTS + "RingArc.cpp", "fraction > 0.0 ? std::min(fraction, 1.0) : 0.0", "fraction <= 0.0 ? 0.0 : std::min(1.0, fraction)"),
    ("the new tick of a gauge is not drawn", COMPONENTS + "RingArc.cpp", "    tick_ = clamped;\n    Q_EMIT tickChanged();", "    tick_ = clamped;"),
    ("chips leave one alone in the last row", COMPONENTS + "FilledRows.cpp", "--ends[rows - 2];", ""),
    ("chips exceed their row", COMPONENTS + "FilledRows.cpp", "naturalWidths[end] <= width) {", "naturalWidths[end] <= width + 20) {"),
    ("the wheel turns the other way", COMPONENTS + "WheelSteps.cpp", "return -angle.y() / anglePerNotch", "return angle.y() / anglePerNotch"),
    ("the chart's line is upside down", COMPONENTS + "LineChart.cpp", "height - height * (values[i] - range.low) / range.span()", "height * (values[i] - range.low) / range.span()"),
    ("a chart that loses its line keeps its column", COMPONENTS + "LineChart.cpp", "    if (hasLine() != before) {", "    if (false) {"),
    ("a bar beyond its end is not cut", COMPONENTS + "Bar.qml", "fraction > 0 ? Math.min(fraction, 1) : 0", "fraction > 0 ? fraction : 0"),
    ("End moves a slider to its beginning", COMPONENTS + "Slider.qml", "root.ask(Math.max(root.from, root.to))", "root.ask(root.from)"),
    ("Page Up moves a slider by one step", COMPONENTS + "Slider.qml", "step(10)", "step(1)"),
    ("a slider reports the value that it has", COMPONENTS + "Slider.qml", "if (next !== value)", "if (true)"),
    ("a slider is not named", COMPONENTS + "Slider.qml", "        Accessible.name: root.text\n", ""),
    ("a slider's bubble does not linger", COMPONENTS + "Slider.qml", "            lingering.restart()\n", ""),
    ("minus and plus of a stepper are exchanged", COMPONENTS + "Stepper.qml", "            direction: -1", "            direction: 1"),
    ("a stepper goes on beyond its end", COMPONENTS + "Stepper.qml", "if (Stepping.possible(value, from, to, stepSize, direction))", "if (true)"),
    ("holding a stepper has no effect", COMPONENTS + "StepperHalf.qml", "            interval = 90\n            root.stepped()", "            interval = 90"),
    ("a switch reports what it is", COMPONENTS + "Switch.qml", "root.toggled(!root.on)", "root.toggled(root.on)"),
    ("a switch is not told to be on", COMPONENTS + "Switch.qml", "    Accessible.checked: on\n", ""),
    ("a sensor's bar is never red", COMPONENTS + "SensorRow.qml", "fill: root.hot ? Theme.hot : Theme.accent", "fill: Theme.accent"),
    ("a peak near the bar's end is marked", COMPONENTS + "SensorRow.qml", "(peak - bar.wanted) * bar.width >= 6", "peak > bar.wanted"),
    ("a sensor's range is not described", COMPONENTS + "SensorRow.qml", "    Accessible.description: range\n", ""),
    ("the focused sensor is read out at every change", COMPONENTS + "SensorRow.qml", "        when: !root.activeFocus\n", ""),
    ("copying a sensor copies its name", COMPONENTS + "SensorRow.qml", 'content: root.name + " " + root.temperature', "content: root.name"),
    ("a gauge does not describe its mark", COMPONENTS + "RingGauge.qml", 'Accessible.description: hasAim ? aimText : ""', 'Accessible.description: ""'),
    ("a gauge without a request has a mark", COMPONENTS + "RingGauge.qml", "tickOpacity: root.hasAim ? 1 : 0", "tickOpacity: 1"),
    ("the first segment cannot be reached by Home", COMPONENTS + "SegmentedControl.qml", "choose(0)", "choose(1)"),
    ("a segment that is chosen is chosen again", COMPONENTS + "SegmentedControl.qml", "if (index !== currentIndex && index >= 0", "if (index >= 0"),
    ("the pill does not move", COMPONENTS + "SegmentedControl.qml", "        shownIndex = currentIndex\n", ""),
    ("a protected application shows its switch", COMPONENTS + "AppRow.qml", "visible: !note.visible", "visible: true"),
    ("an application's switch does not say its share", COMPONENTS + "AppRow.qml", 'spokenShare + ". " + root.switchText', "root.switchText"),
    # The application.
    ("the panel covers the edge of the screen", DESKTOP + "PanelPlacement.cpp", "std::min(position, high - gap - length)", "std::min(position, high - length)"),
    ("the panel opens above an item at the top", DESKTOP + "PanelPlacement.cpp", "under ? itemBottom + gap", "!under ? itemBottom + gap"),
    ("the panel is not centred on its item", DESKTOP + "PanelPlacement.cpp", "centre - panel.width() / 2", "centre"),
    ("a log-out is no end of the session", DESKTOP + "QuitAnswer.cpp", "    case reallyLogOut:\n", ""),
    ("a click on the icon does not open the window", DESKTOP + "ApplicationEvents.cpp", "    handlers().reopen();\n", ""),
    ("a word with a line break is sent", DESKTOP + "InstanceLock.cpp", "word.contains(lineEnd) || ", ""),
    ("a folder that others can read is private", DESKTOP + "InstanceLock.cpp", "(S_IRWXG | S_IRWXO)) == 0", "(S_IWGRP | S_IWOTH)) == 0"),
    ("the second half of a double click closes the panel", APPLICATION + "PanelControl.cpp", "opened_.elapsed() >= QGuiApplication::styleHints()->mouseDoubleClickInterval()", "true"),
    ("the click that closed the panel opens it again", APPLICATION + "PanelControl.cpp", "closed_.isValid() && closed_.elapsed() < reopenGuardMilliseconds", "false"),
    ("a modal window leaves the panel open", APPLICATION + "PanelControl.cpp", "    case QEvent::WindowBlocked:\n        // A modal window has been opened. The panel no longer receives input, so it must not grab any.\n        close();", "    case QEvent::WindowBlocked:"),
    ("a press beside the panel leaves it open", APPLICATION + "PanelControl.cpp", "            close();\n            return true;", "            return true;"),
    ("the panel that loses the focus stays", APPLICATION + "PanelControl.cpp", "if (!window_->isActive() && hasBeenEntered_) {", "if (false) {"),
    ("a growing panel does not move", APPLICATION + "PanelControl.cpp", "    connect(window_.get(), SIGNAL(panelAreaChanged()), this, SLOT(place()));\n", ""),
    ("the panel is as high as the screen", APPLICATION + "PanelControl.cpp", "availableGeometry().height() - 2 * screenMargin", "availableGeometry().height()"),
    ("the views sleep while the panel opens", APPLICATION + "WindowControl.cpp", "    connect(&panel_, &PanelControl::opening, this, [this] { models_.setAwake(true); });\n", ""),
    ("the views do not sleep when the panel closes", APPLICATION + "WindowControl.cpp", "    connect(&panel_, &PanelControl::visibilityChanged, this, &WindowControl::updateAwake);\n", ""),
    ("a new theme does not reach the windows", APPLICATION + "WindowControl.cpp", "    connect(&monitor, &Monitor::themeChanged, this, &WindowControl::applyTheme);\n", ""),
    ("a new language does not reach the windows", APPLICATION + "WindowControl.cpp", "    connect(&monitor, &Monitor::languageChanged, this, &WindowControl::retranslate);\n", ""),
    ("the system's appearance does not reach the windows", APPLICATION + "WindowControl.cpp", "    connect(&appearance, &SystemAppearance::changed, this, &WindowControl::applyAppearance);\n", ""),
    ("dark and light are exchanged for the system", APPLICATION + "WindowControl.cpp", "    case AppTheme::dark:\n        return AppearanceChoice::dark;", "    case AppTheme::dark:\n        return AppearanceChoice::light;"),
    ("the panel stays beside the window", APPLICATION + "WindowControl.cpp", "    panel_.close();\n    system_.setRegular();", "    system_.setRegular();"),
    ("the window is not brought to the front", APPLICATION + "WindowControl.cpp", "    system_.bringToFront(*main_, token);\n", ""),
    ("a page is opened without its window", APPLICATION + "WindowControl.cpp", "    monitor_.setSelectedPage(page);\n    openMain();", "    monitor_.setSelectedPage(page);"),
    ("the panel opens behind a dialog", APPLICATION + "WindowControl.cpp", "if (QWindow* const dialog = QGuiApplication::modalWindow()) {", "if (QWindow* const dialog = nullptr) {"),
    ("the panel opens while a place is asked for", APPLICATION + "WindowControl.cpp", "if (system_.isAskingSavePath()) {", "if (false) {"),
    ("the panel grabs the mouse from the save dialog", APPLICATION + "WindowControl.cpp", "        panel_.close();\n        save(text);", "        save(text);"),
    ("a minimised window counts as seen", APPLICATION + "WindowControl.cpp", " && window->visibility() != QWindow::Minimized", ""),
    ("Settings opens the alerts from the menu", APPLICATION + "ProgramMenus.cpp", "show(Page::settings);", "show(Page::alerts);"),
    ("every page in the menu has the key 1", APPLICATION + "ProgramMenus.cpp", "QString::number(number++)", "QString::number(number)"),
)

# Survivors that are no mistakes: the title, and why nobody can notice them.
EQUIVALENT = {
    "subnormal numbers have a hidden bit": "all of them are far below 0.005, and are written as 0.00 either way",
    "more keys are asked for than an index can name": "to see it, a test would have to make four billion requests",
    "the panel's slider moves when a constant speed fluctuates": "the slider is told of a speed that has not changed",
    "the pill does not move": "the binding of its first place moves it, as long as nothing is assigned",
    "a report without a place is written": "a file without a name cannot be opened",
    "a sensor that is out of sight is not scrolled to": "the page scrolls to whatever gets the focus; scrolling before only makes sure that there is a row",
    "a fan beyond the mask changes it": "the bit of fan 16 is cut off when the mask becomes a number of 16 bits again",
}


def programs_of(path):
    return PROGRAMS[max((beginning for beginning in PROGRAMS if path.startswith(beginning)), key=len)]


def prepare(programs):
    """Configures and builds the programs, once."""
    if not os.path.exists(os.path.join(BUILD, "build.ninja")):
        subprocess.run(["cmake", "-G", "Ninja", "-S", mutation.ROOT, "-B", BUILD, "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD, "--parallel", "2", "--target", *programs], check=True, stdout=subprocess.DEVNULL)


class Checker:
    """Tries mistakes, several at a time. Each has a folder and programs of its own."""

    def __init__(self, folder, build):
        self.folder = folder
        self.build = build
        self.tests = quick.Tests(pathlib.Path(mutation.ROOT))
        self.endurance = quick.endurance(pathlib.Path(BUILD))
        self.suites_of = {program: set() for program in set(self.tests.programs.values())}
        for file, program in self.tests.programs.items():
            self.suites_of[program].update(one or other for one, other in self.tests.suites(file))
        self.environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software", QT_SCALE_FACTOR="1",
                                QT_LOGGING_RULES="qt.qpa.*=false", LC_ALL="C.UTF-8")
        self.sound = {}
        self.lock = threading.Lock()

    def runs(self, path):
        """What has to be run: pairs of a program and its arguments. The tests of the source itself come first."""
        own, rest = [], []
        folder = pathlib.PurePath(os.path.dirname(path).replace("Sources", "Tests", 1))
        own_files = self.tests.of(path)
        if set(own_files) == {file for file in self.tests.files if file.parent == folder}:
            stem = os.path.splitext(os.path.basename(path))[0]
            own_files = [file for file in self.tests.files if stem in NEAR.get(file.stem, ())]
        for program in programs_of(path):
            if program == "ComponentTest":
                files = [os.path.join(mutation.ROOT, file) for file in own_files if file.suffix == ".qml"]
                own += [(program, ("-silent", "-input", file)) for file in files]
                rest.append((program, ("-silent", "-input", os.path.join(mutation.ROOT, folder))))
                continue
            suites = {one or other for file in own_files if self.tests.programs.get(file) == program
                      for one, other in self.tests.suites(file)}
            others = self.suites_of[program] - suites
            own += [(program, self.filter(suites))] if suites else []
            rest += [(program, self.filter(some)) for some in (others - set(LATE), others & set(LATE)) if some]
        return own + rest

    def filter(self, suites):
        wanted = ":".join(f"{suite}.*:*/{suite}.*:{suite}/*.*:*/{suite}/*.*" for suite in sorted(suites))
        unwanted = ":".join(self.endurance + [test for tests in self.tests.alone.values() for test in tests] + [LEFT_OUT])
        return ("--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={wanted}-{unwanted}")

    def run(self, executable, arguments, folder):
        """Whether the tests passed, and otherwise the first line that says what failed."""
        try:
            limited = ["prlimit", f"--cpu={PROCESSOR_SECONDS}", executable, *arguments]
            ran = subprocess.run(limited, cwd=folder, env=self.environment, check=False, capture_output=True, text=True,
                                 errors="replace", timeout=SECONDS)
        except subprocess.TimeoutExpired:
            return False, "it did not end"
        if ran.returncode == 0:
            return True, ""
        lines = (ran.stdout + ran.stderr).splitlines()
        return False, next((line.replace("[  FAILED  ]", "").strip().split(" (")[0] for line in lines
                            if "[  FAILED  ]" in line or line.startswith("FAIL!")), f"status {ran.returncode}")

    def is_sound(self, program, arguments):
        """Whether these tests pass without a mistake; otherwise their verdict would mean nothing."""
        with self.lock:
            if (program, arguments) not in self.sound:
                self.sound[program, arguments] = self.run(os.path.join(BUILD, "tests", program), arguments, self.folder)
            return self.sound[program, arguments]

    def check(self, mistake):
        """Whether the mistake was noticed, and by what."""
        title, path = mistake[0], mistake[1]
        source, original = mutation.planted(self.folder, mistake)
        folder = os.path.dirname(source)
        try:
            planted = self.build.compile(source, original, title)
            built = set()
            for program, arguments in self.runs(path):
                executable = os.path.join(folder, program)
                if program not in built:
                    # Where CMake compiles several sources as one, that object defines everything again; the first definition counts.
                    self.build.link(program, [planted], executable, title, "-Wl,--allow-multiple-definition")
                    built.add(program)
                passed, by = self.run(executable, arguments, folder)
                if not passed:
                    fine, why = self.is_sound(program, arguments)
                    if not fine:
                        raise RuntimeError(f"{program} fails without a mistake: {why}")
                    return True, by
            return False, ""
        finally:
            shutil.rmtree(folder, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser(description="Plants mistakes into core, models and views, one at a time.")
    parser.add_argument("--jobs", type=int, default=1, help="mistakes to be tried at a time (1)")
    parser.add_argument("--list", action="store_true", help="list the mistakes, and check that their places exist")
    parser.add_argument("words", nargs="*", metavar="WORD", help="only mistakes whose title or file contains one of the words")
    given = parser.parse_args()
    mistakes = mutation.of(MISTAKES, given.words)
    assert len({each[0] for each in MISTAKES}) == len(MISTAKES), "two mistakes have the same title"
    with tempfile.TemporaryDirectory(prefix="fenwhirl-mutations-") as folder:
        if given.list:
            for each in mistakes:
                mutation.planted(folder, each)
                print(f"{each[1]}: {each[0]}")
            print(f"{len(mistakes)} mistakes")
            return 0
        prepare(sorted({program for each in mistakes for program in programs_of(each[1])}))
        checker = Checker(folder, mutation.Build(BUILD))
        verdicts = {True: 0, False: 0}
        unexplained = 0
        with concurrent.futures.ThreadPoolExecutor(given.jobs) as workers:
            results = {workers.submit(checker.check, mistake): mistake for mistake in mistakes}
            for result in concurrent.futures.as_completed(results):
                title, path = results[result][:2]
                try:
                    caught, by = result.result()
                except RuntimeError as error:
                    print(f"ERROR    {title}: {error}", flush=True)
                    unexplained += 1
                    continue
                verdicts[caught] += 1
                why = by if caught else EQUIVALENT.get(title, "")
                unexplained += not caught and title not in EQUIVALENT
                print(f"{'noticed ' if caught else 'SURVIVED'} {os.path.basename(path)}: {title}{': ' + why if why else ''}",
                      flush=True)
    print(f"{verdicts[True]} of {sum(verdicts.values())} mistakes were noticed; {unexplained} survivors are not explained")
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main())
