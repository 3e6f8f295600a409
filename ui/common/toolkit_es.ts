<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What the toolkit's own Spanish catalogue leaves in English. -->
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>QAbstractFileIconProvider</name>
    <message><source>Alias</source><translation>Alias</translation></message>
    <message><source>Drive</source><translation>Unidad</translation></message>
    <message><source>File</source><translation>Fichero</translation></message>
    <message><source>%1 File</source><translation>Fichero %1</translation></message>
    <message><source>File Folder</source><translation>Carpeta</translation></message>
    <message><source>Folder</source><translation>Carpeta</translation></message>
    <message><source>Shortcut</source><translation>Acceso directo</translation></message>
    <message><source>Unknown</source><translation>Desconocido</translation></message>
</context>
</TS>
