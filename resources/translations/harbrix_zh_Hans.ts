<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.openInFinder</source>
        <translation>在文件管理器中打开</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>快速预览</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>在文件管理器中显示</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>在文件管理器中打开</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>示例：/mnt/MyNAS（需手动创建目录）</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>自定义挂载路径，留空将使用 ~/HarbrixVolumes/&lt;名称&gt;。注意：主目录以外的路径（如 /mnt/）需要手动创建目录。</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>文件管理器</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>开启后，Harbrix 会在系统登录时自动启动并在系统托盘运行。</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>在文件管理器中显示</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>尚未复制的内容将不会被复制。</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>停止传输？</translation>
    </message>
</context>
</TS>
