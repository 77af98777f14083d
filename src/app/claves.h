#pragma once
// User passwords are kept as a salt and a hash: a 15-character random salt is put before
// the password and the whole is hashed with Argon2id (libsodium's crypto_pwhash_str, whose
// text holds its own parameters). The same function checks them at login.
#include <QString>

inline constexpr int kLongitudSal = 15;

QString nuevaSal();
QString hashClave(const QString& sal, const QString& clave);
bool claveCorrecta(const QString& hash, const QString& sal, const QString& clave);
