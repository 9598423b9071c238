#include "Application.h"

namespace {

Application *currentApplication = nullptr;

} // namespace

Application &theApplication()
{
    return *currentApplication;
}

void setTheApplication(Application *application)
{
    currentApplication = application;
}
