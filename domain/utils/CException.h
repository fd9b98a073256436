// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace VRQ {

/// An error of the part of the program that `Origin` names: what went wrong and where.
template <class Origin> class CException : public std::exception
{
public:
    CException(std::string message, std::string place)
        : m_message(std::move(message)), m_place(std::move(place)), m_what(m_place + " : " + m_message + "\n")
    {
    }

    const std::string& Message() const { return m_message; }
    const std::string& Place() const { return m_place; } ///< name of the function that threw
    /// "place : message", with a line feed at the end. Lives as long as the exception.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    std::string m_message;
    std::string m_place;
    std::string m_what;
};

} // namespace VRQ
