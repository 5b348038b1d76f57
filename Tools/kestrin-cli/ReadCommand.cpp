#include "ReadCommand.h"

#include "DeviceRequest.h"
#include "NumberStyle.h"
#include "Overloaded.h"
#include "PDU.h"

#include <variant>

namespace kestrin::ReadCommand {

ExitCode run(const CliOptions& options, std::ostream& out, std::ostream& err) {
    const Datapoint& datapoint = options.datapoint;
    const Bytes request = PDU::read(datapoint.table(), datapoint.address, datapoint.count());
    const auto answer = DeviceRequest::send(options, request, err);
    if (!answer) {
        return answer.error();
    }
    const auto data = PDU::parseRead(answer.value(), datapoint.table(), datapoint.count());
    if (!data) {
        return DeviceRequest::fail(data.error().pollFailure(), options, err);
    }
    const Value value =
        std::visit(Overloaded{
                       [](const ReadData::Bits& bits) {
                           return Value::unsignedInteger(bits.values.front() ? 1 : 0);
                       },
                       [&](const ReadData::Registers& registers) {
                           return datapoint.valueFromRegisters(registers.values);
                       },
                   },
                   data.value().value);
    out << datapoint.formatted(value, NumberStyle::current());
    if (!datapoint.engineeringUnit.empty()) {
        out << ' ' << datapoint.engineeringUnit;
    }
    out << '\n';
    return ExitCode::success;
}

} // namespace kestrin::ReadCommand
