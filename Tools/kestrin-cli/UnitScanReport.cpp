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

// A slow device's line says so, as its polls need a longer time-out.
std::string lateText(const UnitScan::Answer& answer) {
    return answer.late ? ", after the time-out" : "";
}

// "Unit 17: holding registers (FC03)", "Unit 3: exception 02 to FC03".
std::string answerText(const UnitScan::Answer& answer) {
    const std::string unit = "Unit " + std::to_string(answer.unit) + ": ";
    const std::string function = "FC" + L10n::hexByte(answer.table.readFunction().code());
    const std::string late = lateText(answer);
    if (answer.exception) {
        return unit + "exception " + L10n::hexByte(*answer.exception) + " to " + function + late;
    }
    return unit + std::string(RegisterMapReport::tableWords(answer.table)) + " (" + function + ")" +
           late;
}

} // namespace

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
        out << found.serial.shortDescription() << ": unit " << int(found.answer.unit) << " answers"
            << lateText(found.answer) << '\n';
    }
}

} // namespace kestrin::UnitScanReport
