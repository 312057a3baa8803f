#include "Application.h"
#include "UsageError.h"

#include "Vellum/Exceptions/BaseException.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

// Exit statuses of the program.
constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

int reportError(const std::string& message) {
    std::cout.flush();
    std::cerr << "vellum: error: " << message << std::endl;
    return exitFailure;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    try {
        const Vellum::App::Application application;
        const int status = application.run(arguments, std::cout);
        std::cout.flush();
        if (!std::cout) {
            return reportError("cannot write the output");
        }
        return status;
    } catch (const Vellum::App::UsageError& error) {
        reportError(std::string(error.what()) + " (usage: " + error.synopsis() + ")");
        return exitUsage;
    } catch (const Vellum::Exceptions::BaseException& error) {
        return reportError(error.utf8Message());
    } catch (const std::exception& error) {
        return reportError(error.what());
    }
}
