// CObject and the framework's light run-time class information: IsKindOf, DYNAMIC_DOWNCAST and creation by class
// (RUNTIME_CLASS(View)->CreateObject()), by which a frame makes its view. Objects are not copied.
#pragma once

#include "platform/types.h"

class CObject;

struct CRuntimeClass {
  const char* m_lpszClassName;
  const CRuntimeClass* m_pBaseClass;
  CObject* (*m_pfnCreateObject)();

  // The caller owns the new object; null when the class was not declared with DECLARE_DYNCREATE.
  CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
  BOOL IsDerivedFrom(const CRuntimeClass* base) const;
};

class CObject {
 public:
  CObject() = default;
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;
  virtual ~CObject() = default;

  virtual const CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
  BOOL IsKindOf(const CRuntimeClass* runtimeClass) const { return GetRuntimeClass()->IsDerivedFrom(runtimeClass); }

  static const CRuntimeClass classCObject;
};

inline const CRuntimeClass CObject::classCObject{"CObject", nullptr, nullptr};

inline BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
  const CRuntimeClass* candidate = this;
  while (candidate && candidate != base) {
    candidate = candidate->m_pBaseClass;
  }
  return candidate != nullptr;
}

#define RUNTIME_CLASS(theClass) (&theClass::class##theClass)
#define DYNAMIC_DOWNCAST(theClass, object) (dynamic_cast<theClass*>(object))

#define DECLARE_DYNAMIC(theClass)             \
 public:                                      \
  static const CRuntimeClass class##theClass; \
  const CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(theClass) \
  DECLARE_DYNAMIC(theClass)         \
  static CObject* CreateObject();

#define IMPLEMENT_DYNAMIC(theClass, baseClass)                                                    \
  const CRuntimeClass theClass::class##theClass { #theClass, RUNTIME_CLASS(baseClass), nullptr }; \
  const CRuntimeClass* theClass::GetRuntimeClass() const { return RUNTIME_CLASS(theClass); }

#define IMPLEMENT_DYNCREATE(theClass, baseClass)                                                                  \
  const CRuntimeClass theClass::class##theClass { #theClass, RUNTIME_CLASS(baseClass), &theClass::CreateObject }; \
  const CRuntimeClass* theClass::GetRuntimeClass() const { return RUNTIME_CLASS(theClass); }                      \
  CObject* theClass::CreateObject() { return new theClass; }
