// SPDX-License-Identifier: MIT
// Three-axis sensors QMC5883L (I2C address 0x0D, 200 samples a second) and HMC5883L (0x1E, 75 a second), of which
// modules of the same look are sold. Which one it is shows at its address. Prints microtesla with the time of the board.
#include <Wire.h>

const uint8_t kQmc = 0x0D;
const uint8_t kHmc = 0x1E;
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
    Wire.write(reg);
    Wire.endTransmission();
    if (Wire.requestFrom(chip, count) != count)
        return false;
    for (uint8_t i = 0; i < count; ++i)
        bytes[i] = Wire.read();
    return true;
}

bool answers(uint8_t address)
{
    Wire.beginTransmission(address);
    return Wire.endTransmission() == 0;
}

bool isReady()
{
    uint8_t status = 0;
    return readRegisters(chip == kQmc ? 0x06 : 0x09, &status, 1) && (status & 0x01);
}

void setup()
{
    Serial.begin(115200);
    Wire.begin();
    Wire.setClock(400000);
    while (chip == 0) {
        chip = answers(kQmc) ? kQmc : answers(kHmc) ? kHmc : 0;
        delay(100);
    }
    if (chip == kQmc) {
        writeRegister(0x0B, 0x01); // period of the set and reset pulses, as the maker recommends
        writeRegister(0x09, 0x1D); // 512 readings averaged, 8 G, 200 Hz, continuous
    } else {
        writeRegister(0x00, 0x78); // 8 readings averaged, 75 Hz
        writeRegister(0x01, 0x20); // 1.3 G, 1090 counts per gauss
        writeRegister(0x02, 0x00); // continuous
    }
}

void printAxis(const __FlashStringHelper* name, float microtesla)
{
    Serial.print(name);
    Serial.print(microtesla, 2);
}

void loop()
{
    if (!isReady())
        return;
    const unsigned long time = micros();
    uint8_t b[6];
    if (!readRegisters(chip == kQmc ? 0x00 : 0x03, b, 6))
        return;
    float x, y, z;
    if (chip == kQmc) {
        const float scale = 100.0f / 3000.0f; // microtesla per count
        x = scale * (int16_t)(b[0] | b[1] << 8);
        y = scale * (int16_t)(b[2] | b[3] << 8);
        z = scale * (int16_t)(b[4] | b[5] << 8);
    } else {
        const float scale = 100.0f / 1090.0f;
        x = scale * (int16_t)(b[0] << 8 | b[1]);
        z = scale * (int16_t)(b[2] << 8 | b[3]); // in this order
        y = scale * (int16_t)(b[4] << 8 | b[5]);
    }
    Serial.print(F("t_us:"));
    Serial.print(time);
    printAxis(F(" x_uT:"), x);
    printAxis(F(" y_uT:"), y);
    printAxis(F(" z_uT:"), z);
    Serial.println();
}
