// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

// Python str <-> QString and list <-> QList, so that bindings take and return Qt types directly.
namespace pybind11::detail {

template<>
struct type_caster<QString> {
    PYBIND11_TYPE_CASTER(QString, const_name("str"));

    bool load(handle source, bool convert)
    {
        // Paths may come as pathlib objects.
        if (source && convert && !PyUnicode_Check(source.ptr()) && PyObject_HasAttrString(source.ptr(), "__fspath__")) {
            const object path = reinterpret_steal<object>(PyOS_FSPath(source.ptr()));
            if (!path)
                PyErr_Clear();
            return path && load(path, false);
        }
        if (!source || !PyUnicode_Check(source.ptr()))
            return false;
        Py_ssize_t size = 0;
        const char *text = PyUnicode_AsUTF8AndSize(source.ptr(), &size);
        if (!text) {
            PyErr_Clear();
            return false;
        }
        value = QString::fromUtf8(text, size);
        return true;
    }

    static handle cast(const QString &text, return_value_policy, handle)
    {
        const QByteArray bytes = text.toUtf8();
        return PyUnicode_FromStringAndSize(bytes.constData(), bytes.size());
    }
};

template<typename T>
struct type_caster<QList<T>> : list_caster<QList<T>, T> {
};

} // namespace pybind11::detail
