#include "UnitScanReport.h"

#include "JsonLines.h"
#include "L10n.h"
#include "RegisterMapReport.h"

namespace kestrin::UnitScanReport {

namespace {

nlohmann::json answerJson(const UnitScan::Answer& answer) {
    nlohmann::json object{{"unit", answer.unit},
                          {"table", std::string(answer.table.code())},
                          {"function", answer.table.readFunction().code()},
                          {"status", answer.exception ? "exception" : "ok"}};
    if (answer.exception) {
        object["exception"] = *answer.exception;
    }
    if (answer.late) {
        object["late"] = true;
    }
    return object;
}

} // namespace

std::string answerText(const UnitScan::Answer& answer) {
    const std::string unit = "Unit " + std::to_string(answer.unit) + ": ";
    const std::string function = "FC" + L10n::hexByte(answer.table.readFunction().code());
    const std::string late = answer.late ? ", after the time-out" : "";
    if (answer.exception) {
        return unit + "exception " + L10n::hexByte(*answer.exception) + " to " + function + late;
    }
    return unit + std::string(RegisterMapReport::tableWords(answer.table)) + " (" + function + ")" +
           late;
}

void print(const UnitScan::Answer& answer, bool json, std::ostream& out) {
    if (json) {
        JsonLines::print(answerJson(answer), out);
    } else {
        out << answerText(answer) << '\n' << std::flush;
    }
}

void print(const SettingsSweep::Found& found, bool json, std::ostream& out) {
    if (json) {
        nlohmann::json object = answerJson(found.answer);
        object["baud"] = found.serial.baudRate;
        object["frame"] = found.serial.frameDescription();
        JsonLines::print(object, out);
    } else {
        out << found.serial.shortDescription() << ": unit " << int(found.answer.unit)
            << " answers\n";
    }
}

} // namespace kestrin::UnitScanReport
