// SPDX-License-Identifier: GPL-3.0-or-later
#include "CurlDetour.h"

#include <curl/curl.h>

#include <dlfcn.h>

namespace {

struct State
{
    QByteArray authority;
    QByteArray url;
    bool failsToInitialize = false;
    int numHandles = 0;
    int numCleanups = 0;
    int numTransfers = 0;
};

State& state()
{
    static State state;
    return state;
}

template <class Function> Function* libraryFunction(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

namespace CurlDetour {

void TrustAuthority(const QByteArray& path)
{
    state().authority = path;
}

void SendTo(const QByteArray& url)
{
    state().url = url;
}

void FailToInitialize(bool fails)
{
    state().failsToInitialize = fails;
}

int NumHandles()
{
    return state().numHandles;
}

int NumCleanups()
{
    return state().numCleanups;
}

int NumTransfers()
{
    return state().numTransfers;
}

} // namespace CurlDetour

// The program finds these before the ones of the shared library, as definitions of the executable.

extern "C" CURL* curl_easy_init()
{
    if (state().failsToInitialize)
        return nullptr;
    ++state().numHandles;
    return libraryFunction<decltype(curl_easy_init)>("curl_easy_init")();
}

extern "C" void curl_easy_cleanup(CURL* curl)
{
    ++state().numCleanups;
    libraryFunction<decltype(curl_easy_cleanup)>("curl_easy_cleanup")(curl);
}

extern "C" CURLcode curl_easy_perform(CURL* curl)
{
    ++state().numTransfers;
    // A proxy of the environment is none for the servers of tests.
    curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
    if (!state().authority.isEmpty())
        curl_easy_setopt(curl, CURLOPT_CAINFO, state().authority.constData());
    if (!state().url.isEmpty())
        curl_easy_setopt(curl, CURLOPT_URL, state().url.constData());
    return libraryFunction<decltype(curl_easy_perform)>("curl_easy_perform")(curl);
}
