<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>다운로드</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>다운로드...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>파일을 탐색하려면 기본 창에서 NAS를 마운트하십시오.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>마운트된 NAS 없음</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>파일이 이미 있음</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>"%@" 항목이 이 위치에 이미 있습니다.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>열기</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>파일 관리자에서 열기</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>덮어쓰기</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>미리 보기</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>이름 바꾸기</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>파일 관리자에서 보기</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>건너뛰기</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>추가</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>닫기</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>삭제</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>저장</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>NAS 연결이 끊어졌습니다. 이 폴더에는 캐시된 파일이 없습니다.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>시스템 설정 사용</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>Harbrix 정보</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>NAS 추가</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>새 NAS 설정 추가</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>왼쪽 목록에서 설정을 선택하거나 위의 단추를 눌러 새 NAS를 추가하십시오</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>마운트된 폴더</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>NAS 목록</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>설정된 NAS 없음</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>폴더 열기</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>설정 열기</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>NAS 선택 또는 추가</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>Harbrix 정보</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  파일 탐색...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>업데이트 확인...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Harbrix 상태</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>지금 모두 마운트</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>설정된 NAS 없음</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>기본 창 열기</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>설정 열기...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Harbrix 끝내기</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>최근 파일</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>지금 모두 마운트 해제</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>주소</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>예: 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>인증</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>인증 방식</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>자동으로 마운트</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>기본 정보</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>연결 실패: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>연결 성공(지연 시간 %@ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>사용자 지정 마운트 위치</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>마운트</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>마운트 오류</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>마운트 옵션</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>예: ~/HarbrixVolumes/MyNAS(권장, 자동으로 만들어짐)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>예: /mnt/MyNAS(폴더를 직접 만들어야 함)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>공유를 마운트할 위치입니다. 비워 두면 ~/HarbrixVolumes/&lt;이름&gt;을 사용합니다. 참고: /mnt/처럼 홈 폴더 밖에 있는 폴더는 직접 만들어야 합니다.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>비워 두면 기본 경로 사용</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>마운트하는 중...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>이름</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>예: 우리 집 NAS</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>네트워크 제한</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>현재 네트워크: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>이 NAS는 일치하는 네트워크에서만 자동으로 마운트됩니다. 직접 마운트할 때는 제한이 없습니다.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>IP 범위(CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>예: 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>모든 네트워크</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>현재 IP</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>현재 네트워크</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Wi-Fi 이름</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>제한 방식</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>그래도 연결</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>현재 네트워크가 이 NAS에 허용된 범위에 속하지 않아 연결이 실패할 수 있습니다. 그래도 시도하시겠습니까?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>네트워크가 일치하지 않음</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>열기</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>암호</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>로그인 암호</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>프로토콜</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>읽기 전용으로 마운트</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>공유 경로</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>예: /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>SMB 버전</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>연결 시험</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>연결을 시험하는 중...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>마운트 해제</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>사용자 이름</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>로그인 사용자 이름</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>네트워크 불일치</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>IP 불일치</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>네트워크 일치</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>SSID 불일치</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>NFS 인증</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>NFS 내보내기 경로를 비워 둘 수 없습니다</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs의 인수가 올바르지 않습니다. NFS 서버 주소와 내보내기 경로가 올바른지 확인하십시오. 현재는 NFSv4만 지원합니다.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>NFS를 마운트하려면 root 권한이 필요합니다. 터미널에서 sudoers를 설정하여 암호 없이 mount_nfs를 실행할 수 있게 하거나, 직접 마운트한 다음 사용자 지정 마운트 위치를 사용하십시오.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>고정 옵션: vers=4(NFSv4), tcp(TCP 전송), noresvport(비특권 포트). 읽기 전용으로 마운트할 때는 ro를 추가합니다.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>NFSv4 마운트 옵션</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS에는 사용자 이름과 암호가 필요하지 않습니다. 접근 권한은 NFS 서버의 내보내기 설정(exports)에서 관리합니다.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>NFS 내보내기 경로</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>예: / 또는 /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>현재는 NFSv4만 지원합니다(TCP 전송, 비특권 포트)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>다시 시도</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>캐시 정리</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>마운트 실패</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>마운트 성공</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>네트워크 변경</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>전송 완료</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>전송 실패</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>마운트 해제</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>NAS 연결 실패</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ 마운트가 완료되었습니다</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS 연결됨</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ 다운로드가 완료되었습니다</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>다운로드 완료</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>NAS에 %@ 업로드가 완료되었습니다</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>업로드 완료</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ 마운트가 해제되었습니다</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS 연결 끊김</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>연결 제한 시간</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>재시도</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>마운트에 실패했을 때 다시 시도하는 방법입니다. 간격은 점점 늘어납니다(지수 백오프).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>재시도 횟수</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>재시도 간격</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>SMB 프로토콜</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>기본 SMB 버전</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>제한 시간</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>NAS 연결을 기다리는 최대 시간입니다. 느린 네트워크에서는 길게 설정하는 것이 좋습니다.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>자동 정리</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>자동으로 정리</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>지금 정리</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>모든 캐시 비우기</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>사용 가능한 디스크 공간</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>캐시된 파일 수</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>적중률</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>마지막 정리</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>정리한 파일 수</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>최대 캐시 크기</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>사용한 공간</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>캐시 사용량</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>연결 유지</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>이 옵션을 켜면 마운트된 NAS의 연결 상태를 주기적으로 확인합니다. 홈 네트워크에 있는데도 연결이 끊어져 있으면 자동으로 다시 마운트합니다.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>확인 간격</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>연결 유지</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>프로그램 언어</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>일부 언어는 번역이 완전하지 않을 수 있으며, 번역되지 않은 내용은 영어로 표시됩니다. 계속 개선하겠습니다. 불편을 드려 죄송합니다.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>언어를 바꾼 다음에는 모든 화면에 적용되도록 프로그램을 다시 시작하는 것이 좋습니다.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>언어 선택</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>번역 안내</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>로그인할 때 시작</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>이 옵션을 켜면 로그인할 때 Harbrix가 자동으로 시작되어 시스템 트레이에서 실행됩니다.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>자동 마운트</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>이 옵션을 켜면 프로그램을 시작할 때 사용하도록 설정되고 네트워크가 일치하는 모든 NAS를 자동으로 마운트합니다.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>시작할 때 자동으로 마운트</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>시작 동작</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>네트워크 확인: 일치하는 홈 네트워크에서만 자동으로 마운트합니다</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>네트워크 변경 대응: 네트워크가 바뀌면 2초 동안 안정되기를 기다린 다음 마운트합니다</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>지수 백오프: 실패하면 10s→30s→60s→300s 후에 자동으로 다시 시도합니다</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>안정성 유지 방법</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>절전 모드 대응: 시스템이 깨어나면 자동으로 다시 마운트합니다</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>작업</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>로그 지우기</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>디버그 모드</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>이 옵션을 켜면 자세한 디버그 정보를 기록하며, 성능에 영향을 줄 수 있습니다.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>로그 내보내기</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>파일 출력</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>로그 파일 크기</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>로그 파일에 기록</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>로그 수준</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>최소 수준</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>로그 모드</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>모든 알림 사용</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>이벤트 알림</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>일반</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>기본값 복원</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>시스템 설정에서 Harbrix의 알림이 허용되어 있는지 확인하십시오.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>고급</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>캐시</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>언어</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>시작</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>로그</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>알림</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>실패</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>마운트 실패</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>대기 중</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>마운트됨</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>마운트하는 중...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>오프라인</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>마운트 해제하는 중...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>마운트 해제하는 중</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld개 진행 중</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>취소됨</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>완료된 전송 지우기</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>남은 시간: %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>실패</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>전송 없음</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>일시 중지됨</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>대기 중</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>중지</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>아직 복사되지 않은 파일은 복사되지 않습니다.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>전송을 중지할까요?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>전송</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>Harbrix 정보</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>파일 탐색기</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>설정</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>불러오는 중...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>이름</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>크기</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>수정한 날짜</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>열기</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>파일 관리자에서 보기</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>빈 폴더</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>업로드할 파일을 여기로 끌어다 놓으십시오</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>변경 사항 버리기</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>저장 안 됨</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>변경 사항을 저장할 수 없습니다: %@. Harbrix를 종료하면 사라집니다.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>원래 파일은 %@ 이름으로 보관되어 있습니다</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>설정이 손상되었습니다</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>웹사이트</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>의견 보내기</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>문서</translation>
    </message>
</context>
</TS>
