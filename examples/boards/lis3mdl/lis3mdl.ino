// SPDX-License-Identifier: MIT
// Three-axis sensor LIS3MDL at I2C address 0x1C or 0x1E, 155 samples a second at its lowest noise. Prints microtesla
// with the time of the board.
#include <Wire.h>

uint8_t chip = 0;

void writeRegister(uint8_t reg, uint8_t value)
{
    Wire.beginTransmission(chip);
    Wire.write(reg);
    Wire.write(value);
    Wire.endTransmission();
}

bool readRegisters(uint8_t reg, uint8_t* bytes, uint8_t count)
{
    Wire.beginTransmission(chip);
    Wire.write(reg | 0x80); // the chip counts registers on
    Wire.endTransmission();
    if (Wire.requestFrom(chip, count) != count)
        return false;
    for (uint8_t i = 0; i < count; ++i)
        bytes[i] = Wire.read();
    return true;
}

bool isThere(uint8_t address)
{
    chip = address;
    uint8_t name = 0;
    return readRegisters(0x0F, &name, 1) && name == 0x3D;
}

void setup()
{
    Serial.begin(115200);
    Wire.begin();
    Wire.setClock(400000);
    while (!isThere(0x1C) && !isThere(0x1E))
        delay(100);
    writeRegister(0x20, 0x62); // X and Y at lowest noise, 155 Hz
    writeRegister(0x21, 0x00); // 4 G, 6842 counts per gauss
    writeRegister(0x23, 0x0C); // Z at lowest noise
    writeRegister(0x24, 0x40); // no new value while one is read
    writeRegister(0x22, 0x00); // continuous
}

void printAxis(const __FlashStringHelper* name, const uint8_t* bytes)
{
    const float scale = 100.0f / 6842.0f; // microtesla per count
    Serial.print(name);
    Serial.print(scale * (int16_t)(bytes[0] | bytes[1] << 8), 2);
}

void loop()
{
    uint8_t status = 0;
    if (!readRegisters(0x27, &status, 1) || !(status & 0x08))
        return;
    const unsigned long time = micros();
    uint8_t b[6];
    if (!readRegisters(0x28, b, 6))
        return;
    Serial.print(F("t_us:"));
    Serial.print(time);
    printAxis(F(" x_uT:"), b);
    printAxis(F(" y_uT:"), b + 2);
    printAxis(F(" z_uT:"), b + 4);
    Serial.println();
}
