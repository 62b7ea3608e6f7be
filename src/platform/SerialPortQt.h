#pragma once
// Serial ports through Qt Serial Port.

#include "platform/SerialPort.h"

class SerialPortsQt : public SerialPorts {
public:
    QList<SerialPortEntry> list() override;
    std::unique_ptr<SerialPort> open(const SerialSettings& settings) override;
};

// The system's ports; the service holds no state, so one serves the whole process.
SerialPorts& systemSerialPorts();
